// The main job in a real XFCE: triggers, the icon in its panel, its layout indicator.
#include "desktop_session.h"
#include "session/hopsel_program.h"

#include <gtest/gtest.h>

using namespace hopsel::test;

namespace {

class Xfce : public testing::Test {
  protected:
    /// The strip in which the panel is, at the upper edge.
    QImage panel() {
        const QImage all = desktop.screen();
        return all.copy(0, 0, all.width(), 26);
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
    const QImage english = panel();
    desktop.layouts().lockGroup(1);
    const QImage russian = panel();
    const QRect indicator = difference(english, russian);
    ASSERT_FALSE(indicator.isEmpty());
    desktop.layouts().lockGroup(0);

    desktop.startProgram(twoRules);
    const int behind = indicator.right() + 1;
    const auto icon = [&] { return panel().copy(behind, 0, english.width() - behind, english.height()); };
    const QImage without = english.copy(behind, 0, english.width() - behind, english.height());
    const QImage latin = icon();
    const QRect place = difference(without, latin);
    ASSERT_FALSE(place.isEmpty());
    EXPECT_GE(contrast(latin.copy(place)), 4.5);
    EXPECT_EQ(panel().copy(indicator), english.copy(indicator));

    ASSERT_TRUE(desktop.tapReaches(1));
    EXPECT_NE(icon(), latin) << "it tells the other one now";
    EXPECT_EQ(panel().copy(indicator), russian.copy(indicator));

    // The panel's own switcher, and a tap after it.
    desktop.keyboard().movePointer(static_cast<std::int16_t>(indicator.center().x()), 13);
    desktop.keyboard().button(1);
    ASSERT_TRUE(desktop.layouts().waitForGroup(0, patience));
    EXPECT_TRUE(desktop.tapReaches(1));
}

} // namespace
