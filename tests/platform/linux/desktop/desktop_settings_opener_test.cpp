#include "platform/linux/desktop/desktop_settings_opener.h"

#include "platform/linux/desktop/desktop_rig.h"

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
    EXPECT_EQ(log.lines.size(), 1U);
}

} // namespace
