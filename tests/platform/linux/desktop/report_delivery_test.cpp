// A file dialog and a mail program as the user's desktop has them, on a display and a bus of the
// test's own.
#include "platform/linux/desktop/report_delivery.h"

#include "platform/linux/desktop/desktop_rig.h"
#include "session/private_bus.h"
#include "session/x_server.h"
#include "support/bus_links.h"

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QTimer>

using namespace hopsel::session;
using hopsel::DesktopReportDelivery;
using hopsel::fakes::RecordingLog;
using hopsel::test::Environment;
using hopsel::test::ProgramsInPath;
using testing::HasSubstr;

namespace {

class ReportDelivery : public testing::Test {
  protected:
    using Answer = std::function<void(QFileDialog&)>;
    /// Saves, with a user who answers the dialog.
    std::optional<std::filesystem::path> save(const Answer& answer) {
        QTimer user;
        QObject::connect(&user, &QTimer::timeout, &user, [&] {
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            if (dialog == nullptr || !dialog->isVisible()) return;
            user.stop();
            answer(*dialog);
        });
        user.start(5);
        return delivery.saveFile("Hopsel-report.txt", "보고서\n");
    }
    static void accept(QFileDialog& dialog) { QMetaObject::invokeMethod(&dialog, "accept"); }
    Answer acceptAs(const std::filesystem::path& file) {
        return [file](QFileDialog& dialog) {
            dialog.findChild<QLineEdit*>("fileNameEdit")->setText(QString::fromStdString(file.string()));
            accept(dialog);
        };
    }
    TemporaryFolder folder;
    Environment home{"HOME", folder.path().string()};
    Environment configuration{"XDG_CONFIG_HOME", (folder.path() / "config").string()};
    ProgramsInPath programs;
    RecordingLog log;
    DesktopReportDelivery delivery{
        hopsel::test::linkTo(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS").toStdString()), log};
};

TEST_F(ReportDelivery, SavesWhereTheUserSaysAndOpensTheFolder) {
    programs.install("xdg-open");
    const auto downloads = folder.path() / "Downloads";
    std::filesystem::create_directories(downloads);
    const auto saved = save(accept);
    ASSERT_EQ(saved, downloads / "Hopsel-report.txt") << "where it suggests to";
    EXPECT_EQ(hopsel::contents(*saved), "보고서\n");
    EXPECT_EQ(programs.nextCall(), "xdg-open|" + downloads.string()) << "no file manager";
}

TEST_F(ReportDelivery, EndsTheNameThatTheUserGivesAsATextFile) {
    EXPECT_EQ(save(acceptAs(folder.path() / "my report")), folder.path() / "my report.txt");
}

TEST_F(ReportDelivery, ACancelledDialogOrAFailedWriteGivesNothing) {
    EXPECT_EQ(save([](QFileDialog& dialog) { dialog.reject(); }), std::nullopt);
    EXPECT_THAT(log.lines, testing::IsEmpty());
    const auto place = folder.path() / "gone while the dialog shows it";
    std::filesystem::create_directories(place);
    const auto failed = save([&](QFileDialog& dialog) {
        acceptAs(place / "report.txt")(dialog);
        std::filesystem::remove(place);
    });
    EXPECT_EQ(failed, std::nullopt);
    EXPECT_THAT(log.lines, testing::ElementsAre(HasSubstr("Report: not saved: ")));
}

TEST_F(ReportDelivery, OpensMailAddressesAndNothingElse) {
    programs.install("xdg-open");
    for (const char* address : {"", "mailto", "file:///etc/passwd", "--help"}) delivery.openMail(address);
    delivery.openMail("mailto:a@example.org?body=%0A");
    EXPECT_EQ(programs.nextCall(), "xdg-open|mailto:a@example.org?body=%0A");
}

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
    const XServer display;
    const PrivateBus bus;
    ::setenv("QT_QPA_PLATFORM", "xcb", 1);
    ::unsetenv("XDG_CURRENT_DESKTOP"); // and with it the desktop's own file dialog
    ::unsetenv("QT_QPA_PLATFORMTHEME");
    const QApplication application(argc, argv);
    hopsel::test::waitInEventLoop();
    return RUN_ALL_TESTS();
}
