#include "platform/linux/desktop/desktop_settings_opener.h"

#include "platform/linux/desktop/desktop_rig.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QMessageBox>

namespace {

TEST(SettingsOpener, OpensTheProgramOfTheDesktopElseTheHelpPageElseNamesThePageInTheLog) {
    hopsel::test::ProgramsInPath programs;
    hopsel::fakes::RecordingLog log;
    hopsel::DesktopSettingsOpener opener(nullptr, "/usr/share/doc of hopsel/permissions.html", log);
    opener.openLoginItems();
    EXPECT_THAT(log.lines,
                testing::ElementsAre(testing::HasSubstr("/usr/share/doc of hopsel/permissions.html")));

    for (const char* name : {"gnome-tweaks", "xdg-open"}) programs.install(name);
    const std::string page = "xdg-open|file:///usr/share/doc%20of%20hopsel/permissions.html#";
    const hopsel::test::Environment session("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
    opener.openLoginItems();
    EXPECT_EQ(programs.nextCall(), "gnome-tweaks|");
    opener.openAccessibility();
    EXPECT_EQ(programs.nextCall(), page + "combinations") << "what GNOME has for it is not installed";
    const char* setup = "ibus-setup";
    hopsel::DesktopSettingsOpener withMethod(nullptr, "/usr/share/doc of hopsel/permissions.html", log,
                                             [&] { return setup; });
    withMethod.openInputSources();
    EXPECT_EQ(programs.nextCall(), page + "sources") << "neither is installed";
    for (const char* name : {"ibus-setup", "gnome-control-center"}) programs.install(name);
    withMethod.openInputSources();
    EXPECT_EQ(programs.nextCall(), "ibus-setup|");
    setup = nullptr;
    withMethod.openInputSources();
    EXPECT_EQ(programs.nextCall(), "gnome-control-center|keyboard");
    std::function<void(const hopsel::WayOut&)> otherwise;
    hopsel::DesktopSettingsOpener withRemedy(
        nullptr, "/usr/share/doc of hopsel/permissions.html", log, nullptr,
        [&](const QObject* /*context*/, const auto& failed) { otherwise = failed; });
    withRemedy.openInputMonitoring();
    ASSERT_TRUE(otherwise) << "tried first";
    otherwise({});
    EXPECT_EQ(programs.nextCall(), page + "listening");
    otherwise({"It was not turned on.", "sudo do it"});
    const auto* message = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_EQ(message, nullptr) << "nothing waits for it";
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->isVisible()) message = qobject_cast<QMessageBox*>(window);
    ASSERT_NE(message, nullptr);
    EXPECT_EQ(message->text(), "It was not turned on.");
    EXPECT_TRUE(message->informativeText().endsWith("sudo do it"));
    const auto press = [&](QMessageBox::ButtonRole role) {
        for (QAbstractButton* button : message->buttons())
            if (message->buttonRole(button) == role) button->click();
    };
    press(QMessageBox::ActionRole);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "sudo do it");
    press(QMessageBox::HelpRole);
    EXPECT_EQ(programs.nextCall(), page + "listening");
    press(QMessageBox::RejectRole);
    EXPECT_FALSE(message->isVisible());
    EXPECT_EQ(log.lines.size(), 1U);
}

} // namespace
