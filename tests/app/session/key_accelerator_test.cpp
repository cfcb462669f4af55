#include "app/linux/session/key_accelerator.h"

#include <gmock/gmock.h>

namespace hopsel {
namespace {

using namespace std::string_literals;

TEST(KeyAccelerator, BothSpellingsGiveThePositionOnAnAmericanKeyboard) {
    constexpr auto command = ModifierKey::leftCommand, option = ModifierKey::leftOption,
                   shift = ModifierKey::leftShift, control = ModifierKey::leftControl;
    const struct {
        const char* accelerator;
        ShortcutKey expected;
    } cases[] = {
        {"<Super>space", {49, {command}}},
        {"<Primary><Mod1>Space", {49, {control, option}}},
        {"<ctrl><META>z", {6, {control, option}}},
        {"Control+Shift+space", {49, {control, shift}}},
        {"Super+A", {0, {command}}},
        {"<Alt>exclam", {18, {option}}},
        {"Control+plus", {24, {control}}},
        {"Menu", {110, {}}},
        {"XF86Keyboard", {256 + 374, {}}},
    };
    for (const auto& tested : cases)
        EXPECT_EQ(shortcutFromAccelerator(tested.accelerator), tested.expected) << tested.accelerator;
}

TEST(KeyAccelerator, ModifiersAloneAndJunkAreNoShortcut) {
    for (const std::string& text :
         {""s, "disabled"s, "<Super>"s, "<Superspace"s, "<Hyper>space"s, "<>space"s, "Super+"s, "+space"s,
          "Foo+space"s, "Control+Shift_L"s, "Meta_L"s, "Caps_Lock"s, "Hangul"s, "Zenkaku_Hankaku"s,
          "<Super>sp ace"s, "space\0"s, "<Super>\xEA\xB0\x80"s, std::string(1'000'000, '<')})
        EXPECT_EQ(shortcutFromAccelerator(text), std::nullopt) << text.substr(0, 40);
}

} // namespace
} // namespace hopsel
