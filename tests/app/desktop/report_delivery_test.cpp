// A file dialog, a clipboard and a file manager as the user's desktop has them, on a display and a bus of the
// test's own.
#include "app/linux/desktop/report_delivery.h"

#include "app/desktop/desktop_rig.h"
#include "session/private_bus.h"
#include "session/x_display.h"
#include "session/x_server.h"

#include <QApplication>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QFileDialog>
#include <QLineEdit>
#include <QTimer>

using namespace hopsel::session;
using hopsel::DesktopReportDelivery;
using hopsel::fakes::RecordingLog;
using hopsel::test::Environment;
using hopsel::test::ProgramsInPath;
using hopsel::test::runLoopUntil;
using testing::HasSubstr;

namespace {

class FileManager final : public QDBusVirtualObject {
  public:
    explicit FileManager(bool isBroken) : isBroken_(isBroken) {
        bus_.registerVirtualObject("/org/freedesktop/FileManager1", this);
        bus_.registerService("org.freedesktop.FileManager1");
    }
    ~FileManager() override { QDBusConnection::disconnectFromBus("file manager"); }

    QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& call, const QDBusConnection& bus) override {
        if (call.member() == "ShowItems" && call.signature() == "ass")
            shown += call.arguments().at(0).toStringList();
        return bus.send(isBroken_ ? call.createErrorReply(QDBusError::Failed, "no") : call.createReply());
    }
    QStringList shown;

  private:
    bool isBroken_;
    QDBusConnection bus_ =
        QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), "file manager");
};

class ReportDelivery : public testing::Test {
  protected:
    ~ReportDelivery() override { QDBusConnection::disconnectFromBus("delivery"); }

    using Answer = std::function<void(QFileDialog&)>;
    /// Saves, with a user who answers the dialog.
    std::optional<std::filesystem::path> save(const Answer& answer, DesktopReportDelivery& by) {
        QTimer user;
        QObject::connect(&user, &QTimer::timeout, &user, [&] {
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            if (dialog == nullptr || !dialog->isVisible()) return;
            user.stop();
            answer(*dialog);
        });
        user.start(5);
        return by.saveFile("Hopsel-report.txt", "보고서\n");
    }
    std::optional<std::filesystem::path> save(const Answer& answer) { return save(answer, delivery); }
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
        QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), "delivery"), log};
};

TEST_F(ReportDelivery, SavesWhereTheUserSaysAndShowsItInTheFileManager) {
    programs.install("xdg-open");
    FileManager manager(false);
    std::filesystem::create_directories(folder.path() / "Downloads");
    const auto saved = save(accept);
    ASSERT_EQ(saved, folder.path() / "Downloads" / "Hopsel-report.txt") << "where it suggests to";
    EXPECT_EQ(hopsel::contents(*saved), "보고서\n");
    EXPECT_TRUE(runLoopUntil([&] { return !manager.shown.isEmpty(); }));
    EXPECT_EQ(manager.shown, QStringList("file://" + QString::fromStdString(saved->string())));
    EXPECT_TRUE(hopsel::test::staysFalse([&] { return programs.wasCalled(); }));
    EXPECT_THAT(log.lines, testing::IsEmpty());
}

TEST_F(ReportDelivery, OpensTheFolderWhereNoFileManagerAnswers) {
    programs.install("xdg-open");
    const std::string openFolder = "xdg-open|" + folder.path().string();
    EXPECT_EQ(save(acceptAs(folder.path() / "my report")), folder.path() / "my report.txt");
    EXPECT_EQ(programs.nextCall(), openFolder) << "no file manager";
    const FileManager broken(true);
    save(acceptAs(folder.path() / "another.txt"));
    EXPECT_EQ(programs.nextCall(), openFolder) << "one that cannot";
    DesktopReportDelivery alone(QDBusConnection("never connected"), log);
    save(acceptAs(folder.path() / "third.txt"), alone);
    EXPECT_EQ(programs.nextCall(), openFolder) << "no bus";
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

TEST_F(ReportDelivery, AnotherProgramCanPasteTheReport) {
    const std::string report = "Hopsel 버그 리포트\n" + std::string(300'000, 'x') + "\n";
    delivery.copyToClipboard("what was there before");
    delivery.copyToClipboard(report);

    XDisplay other;
    const xcb_window_t window = xcb_generate_id(other.get());
    xcb_create_window(other.get(), XCB_COPY_FROM_PARENT, window, other.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    const xcb_atom_t property = other.atom("PASTED");
    xcb_convert_selection(other.get(), window, other.atom("CLIPBOARD"), other.atom("UTF8_STRING"), property,
                          XCB_CURRENT_TIME);
    other.flush();
    bool isThere = false;
    ASSERT_TRUE(other.waitFor(
        [&](const xcb_generic_event_t& event) { isThere = typeOf(event) == XCB_SELECTION_NOTIFY; },
        [&] { return isThere; }, std::chrono::seconds(10)));
    const XOwned<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        other.get(),
        xcb_get_property(other.get(), 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 1'000'000),
        nullptr));
    ASSERT_TRUE(reply);
    const auto* bytes = static_cast<const char*>(xcb_get_property_value(reply.get()));
    EXPECT_EQ(std::string(bytes, static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))),
              report);
}

TEST_F(ReportDelivery, OpensMailAddressesAndNothingElse) {
    programs.install("xdg-open");
    for (const char* address : {"", "mailto", "file:///etc/passwd", "--help"}) delivery.openMail(address);
    delivery.openMail("mailto:a@example.org?subject=Hopsel%20%EB%B2%84&body=%0A");
    EXPECT_EQ(programs.nextCall(), "xdg-open|mailto:a@example.org?subject=Hopsel%20%EB%B2%84&body=%0A");
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
