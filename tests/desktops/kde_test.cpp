// The main job in KDE: its window manager, its keyboard daemon and its panel, whose launcher opens with a
// lone Super.
#include "desktop_session.h"
#include "session/hopsel_program.h"

#include <gtest/gtest.h>
#include <regex>

using namespace hopsel::test;
using namespace std::chrono_literals;

namespace {

constexpr int panelHeight = 44;
constexpr auto aWhile = 3s; ///< for what a desktop does in an instant, unless it is still starting

class Kde : public testing::Test {
  protected:
    static std::string callLayouts(const std::string& method) {
        ChildProcess::Options options;
        options.program = "gdbus";
        options.package = "libglib2.0-bin";
        options.arguments = {"call", "--session", "-d", "org.kde.keyboard",
                             "-o",   "/Layouts",  "-m", "org.kde.KeyboardLayouts." + method};
        return runProgram(options);
    }
    /// The layout that the daemon has, which the indicator shows.
    static std::string indicated() { return callLayouts("getLayout"); }
    static std::string rules() {
        return std::regex_replace(std::string(twoRules), std::regex("xkb:"), "kde:");
    }

    /// Where the launcher opens: left of the window, above the panel.
    static QImage corner(const QImage& screen) {
        return screen.copy(0, screen.height() / 3, screen.width() / 3, screen.height() * 2 / 3 - panelHeight);
    }
    /// Returns when a lone Super has opened it, and it is shut again; false if it never does.
    bool launcherOpensByItself() {
        const Deadline deadline(patience);
        do {
            // The desktop may still be drawing itself: then it is no more as it was.
            shut = corner(desktop.screen());
            const auto isShut = [this](const QImage& screen) { return corner(screen) == shut; };
            const auto isOpen = [&](const QImage& screen) { return !isShut(screen); };
            desktop.tap();
            if (!isOpen(desktop.screenThat(isOpen, aWhile))) continue;
            desktop.keyboard().tap(key::escape);
            if (isShut(desktop.screenThat(isShut, aWhile))) {
                desktop.window().focus();
                return true;
            }
        } while (!deadline.hasPassed());
        return false;
    }

    QImage shut; ///< that corner without the launcher
    DesktopSession desktop{"kde"};
};

TEST_F(Kde, SwitchesInStepWithItsOwnSwitcherAndKeepsTheLauncherShut) {
    ASSERT_TRUE(launcherOpensByItself());
    const QImage before = desktop.screen();
    desktop.startProgram(rules());
    std::string expected;
    for (int tap = 1; tap <= 20; ++tap) {
        ASSERT_TRUE(desktop.tapReaches(tap % 2)) << tap;
        ASSERT_EQ(corner(desktop.screen()), shut) << "without the launcher, tap " << tap;
        desktop.keyboard().tap(key::a);
        expected += tap % 2 == 1 ? "ф" : "a";
    }
    EXPECT_TRUE(desktop.window().waitForText(expected)) << desktop.window().typed();

    EXPECT_EQ(indicated(), "(uint32 0,)\n");
    ASSERT_TRUE(desktop.tapReaches(1));
    EXPECT_EQ(indicated(), "(uint32 1,)\n");
    callLayouts("switchToNextLayout");
    ASSERT_TRUE(desktop.layouts().waitForGroup(0, patience));
    EXPECT_TRUE(desktop.tapReaches(1)) << "from what the desktop's own switcher left";

    desktop.keyboard().press(key::leftShift);
    desktop.keyboard().tap(key::space);
    desktop.keyboard().release(key::leftShift);
    EXPECT_TRUE(desktop.layouts().waitForGroup(0, patience)) << "the combination";

    // Left of the clock, in the panel.
    const auto tray = [](const QImage& screen) {
        return screen.copy(screen.width() / 2, screen.height() - panelHeight, screen.width() / 2 - 150,
                           panelHeight);
    };
    const auto contrastIn = [&](const QImage& screen) { return contrastOfNew(tray(before), tray(screen)); };
    EXPECT_GE(contrastIn(desktop.screenThat([&](const QImage& now) { return contrastIn(now) >= 4.5; })), 4.5);
}

} // namespace
