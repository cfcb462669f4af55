#include "app/linux/desktop/desktop_settings_opener.h"

#include "app/desktop/desktop_rig.h"

namespace {

TEST(SettingsOpener, OpensTheProgramOfTheDesktopElseTheHelpPageElseNamesThePageInTheLog) {
    hopsel::test::ProgramsInPath programs;
    hopsel::fakes::RecordingLog log;
    hopsel::DesktopSettingsOpener opener(nullptr, "/usr/share/doc of hopsel/permissions.html", log);
    opener.openLoginItems();
    EXPECT_THAT(log.lines,
                testing::ElementsAre(testing::HasSubstr("/usr/share/doc of hopsel/permissions.html")));

    for (const char* name :
         {"gnome-control-center", "gnome-tweaks", "systemsettings5", "xfce4-session-settings", "xdg-open"})
        programs.install(name);
    const std::string page = "xdg-open|file:///usr/share/doc%20of%20hopsel/permissions.html#";
    const std::string expected[][3] = {
        {"GNOME", "gnome-control-center|keyboard", "gnome-tweaks|"},
        {"KDE", "systemsettings5|kcm_keys", "systemsettings5|kcm_autostart"},
        {"", page + "combinations", page + "login"},
    };
    for (const auto& [desktop, shortcuts, autostart] : expected) {
        const hopsel::test::Environment session("XDG_CURRENT_DESKTOP", desktop);
        opener.openAccessibility();
        EXPECT_EQ(programs.nextCall(), shortcuts) << desktop;
        opener.openLoginItems();
        EXPECT_EQ(programs.nextCall(), autostart) << desktop;
    }
    opener.openInputMonitoring();
    EXPECT_EQ(programs.nextCall(), page + "listening");
    EXPECT_EQ(log.lines.size(), 1U);
}

} // namespace
