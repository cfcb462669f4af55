// The main job in a real XFCE: triggers, the icon in its panel, its layout indicator.
#include "desktop_session.h"
#include "session/hopsel_program.h"

#include <gtest/gtest.h>

using namespace hopsel::test;

namespace {

constexpr int widestIndicator = 60; ///< a flag or two letters in the panel

class Xfce : public testing::Test {
  protected:
    /// The strip in which the panel is, at the upper edge.
    static QImage panelOf(const QImage& screen) { return screen.copy(0, 0, screen.width(), 26); }
    QImage panel() { return panelOf(desktop.screen()); }
    /// The panel, once it is as wanted.
    template <class IsWanted>
    QImage panelThat(IsWanted isWanted) {
        return panelOf(desktop.screenThat([&](const QImage& screen) { return isWanted(panelOf(screen)); }));
    }

    DesktopSession desktop{"xfce"};
};

TEST_F(Xfce, SwitchesWithItsTriggersAndEveryLetterArrives) {
    desktop.startProgram(twoRules);
    std::string expected;
    for (int tap = 1; tap <= 20; ++tap) {
        ASSERT_TRUE(desktop.tapReaches(tap % 2)) << tap;
        desktop.keyboard().tap(key::a);
        expected += tap % 2 == 1 ? "ф" : "a";
    }
    desktop.keyboard().press(key::leftShift);
    desktop.keyboard().tap(key::space);
    desktop.keyboard().release(key::leftShift);
    ASSERT_TRUE(desktop.layouts().waitForGroup(1, patience));
    desktop.keyboard().tap(key::a);
    EXPECT_TRUE(desktop.window().waitForText(expected + "ф"));
}

TEST_F(Xfce, ShowsAnIconThatCanBeReadAndAnIndicatorThatKeepsStep) {
    // The panel comes up by and by: once nothing but the indicator follows the layout, it is there.
    QImage english, russian;
    QRect indicator;
    const Deadline deadline(2 * patience);
    do {
        desktop.layouts().lockGroup(0);
        english = panel();
        desktop.layouts().lockGroup(1);
        russian = panelThat([&](const QImage& now) { return now != english; });
        indicator = difference(english, russian);
    } while (indicator.width() > widestIndicator && !deadline.hasPassed());
    ASSERT_FALSE(indicator.isEmpty());
    desktop.layouts().lockGroup(0);
    const auto indicates = [&](const QImage& now, const QImage& wanted) {
        return now.copy(indicator) == wanted.copy(indicator);
    };

    desktop.startProgram(twoRules);
    const int behind = indicator.right() + 1;
    const auto iconIn = [&](const QImage& now) {
        return now.copy(behind, 0, english.width() - behind, english.height());
    };
    const auto contrastIn = [&](const QImage& now) { return contrastOfNew(iconIn(english), iconIn(now)); };
    // The icon comes by and by as well, and may tell a layout of a moment ago.
    QImage latin, cyrillic;
    do {
        desktop.layouts().lockGroup(0);
        latin =
            panelThat([&](const QImage& now) { return contrastIn(now) >= 4.5 && indicates(now, english); });
        ASSERT_GE(contrastIn(latin), 4.5);
        ASSERT_TRUE(indicates(latin, english));
        ASSERT_TRUE(desktop.tapReaches(1));
        cyrillic = panelThat([&](const QImage& now) { return indicates(now, russian); });
        ASSERT_TRUE(indicates(cyrillic, russian));
    } while (iconIn(cyrillic) == iconIn(latin) && !deadline.hasPassed());
    EXPECT_NE(iconIn(cyrillic), iconIn(latin)) << "it tells the other one now";

    // The panel's own switcher, and a tap after it.
    desktop.keyboard().movePointer(static_cast<std::int16_t>(indicator.center().x()), 13);
    desktop.keyboard().button(1);
    ASSERT_TRUE(desktop.layouts().waitForGroup(0, patience));
    EXPECT_TRUE(desktop.tapReaches(1));
}

} // namespace
