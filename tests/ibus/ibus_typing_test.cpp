// What a user has of it: Korean and English text in another program's field.
#include "core/platform/input_source_switcher.h"
#include "core/platform/linux/main_loop.h"
#include "ibus/ibus_rig.h"
#include "session/text_field.h"
#include "session/x_keyboard.h"
#include "session/x_layouts.h"

#include <gtest/gtest.h>

namespace hopsel {
namespace {

constexpr std::uint16_t hanSyllable[] = {KEY_G, KEY_K, KEY_S};

TEST(IbusTyping, SwitchInTheMiddleOfASyllableKeepsItEveryTime) {
    test::IbusRig session;
    session::setLayouts("us,kr", ",kr104");
    test::IbusRig::setEngines("['xkb:us::eng', 'hangul']");
    test::IbusRig::setHangulStart("hangul");
    session.startWindowManager();
    const auto sources = session.makeSources();
    LiveInputSourceService service(sources, uptimeSeconds, runFor);
    session.startDaemon();
    ASSERT_TRUE(test::IbusRig::become(true, *sources));
    ASSERT_TRUE(service.switchTo("ibus:xkb:us::eng").verified);
    session::TextField field("ibus");
    session::XKeyboard keyboard;
    std::string expected;
    for (int round = 0; round < 20; ++round) {
        ASSERT_TRUE(service.switchTo("ibus:hangul").verified);
        for (const std::uint16_t code : hanSyllable) keyboard.tap(code);
        ASSERT_TRUE(field.waitForComposed("한")) << round << " " << field.composed() << field.text();
        ASSERT_TRUE(service.switchTo("ibus:xkb:us::eng").verified);
        keyboard.tap(session::key::a);
        expected += "한a";
        ASSERT_TRUE(field.waitForText(expected)) << round << " " << field.text();
    }
}

} // namespace
} // namespace hopsel
