// The main job in KDE: its window manager, its keyboard daemon and its panel, whose launcher opens with a
// lone Super.
#include "desktop_session.h"
#include "session/hopsel_program.h"

#include <gtest/gtest.h>
#include <regex>

using namespace hopsel::test;
using namespace std::chrono_literals;

namespace {

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

    bool hasLostFocus(std::chrono::milliseconds timeout) {
        return desktop.window().waitFor(
            [](const XTestWindow::Records& records) {
                return std::any_of(records.begin(), records.end(), [](const XRecord& record) {
                    return record.kind == XRecord::Kind::focusOut;
                });
            },
            timeout);
    }
    /// Returns when a lone Super has opened it, and it is shut again; false if it never does.
    bool launcherOpensByItself() {
        const Deadline deadline(patience);
        desktop.window().records();
        desktop.window().clear();
        do {
            if (deadline.hasPassed()) return false;
            desktop.tap();
        } while (!hasLostFocus(2s));
        desktop.keyboard().tap(key::escape);
        desktop.window().focus();
        return true;
    }

    DesktopSession desktop{"kde"};
};

TEST_F(Kde, SwitchesInStepWithItsOwnSwitcherAndKeepsTheLauncherShut) {
    ASSERT_TRUE(launcherOpensByItself());
    const QImage before = desktop.screen();
    desktop.startProgram(rules());
    std::string expected;
    for (int tap = 1; tap <= 20; ++tap) {
        ASSERT_TRUE(desktop.tapReaches(tap % 2)) << tap;
        desktop.keyboard().tap(key::a);
        expected += tap % 2 == 1 ? "ф" : "a";
    }
    EXPECT_TRUE(desktop.window().waitForText(expected)) << desktop.window().typed();
    EXPECT_FALSE(hasLostFocus(0ms)) << "to the launcher";

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
        return screen.copy(screen.width() / 2, screen.height() - 44, screen.width() / 2 - 150, 44);
    };
    const QImage with = tray(desktop.screen());
    const QRect icon = difference(tray(before), with);
    ASSERT_FALSE(icon.isEmpty());
    EXPECT_GE(contrast(with.copy(icon)), 4.5);
}

} // namespace
