// What keys mean in keymaps that people use, and the table of key codes.
#include "platform/linux/keys/held_keys.h"
#include "platform/linux/keys/key_codes.h"
#include "platform/linux/keys/key_meanings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>
#include <memory>

using namespace hopsel;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

namespace {

constexpr XModifierMask shift = 0x01;
constexpr XModifierMask control = 0x04;
constexpr XModifierMask mod1 = 0x08;
constexpr XModifierMask mod5 = 0x80;

constexpr XKeyCode xKey(unsigned linuxCode) {
    return static_cast<XKeyCode>(linuxCode + key_codes::x11Offset);
}

KeyMeanings meaningsOf(const char* layout, const char* variant = "", const char* options = "") {
    const std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> context(
        xkb_context_new(XKB_CONTEXT_NO_FLAGS), &xkb_context_unref);
    const xkb_rule_names names{"evdev", "pc105", layout, variant, options};
    const std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)> keymap(
        xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS), &xkb_keymap_unref);
    return KeyMeanings(keymap.get());
}

/// The masks of the shortcut's grab, the locks left out.
std::set<XModifierMask> masksWithoutLocks(const KeyMeanings& meanings, const ShortcutKey& shortcut) {
    std::set<XModifierMask> masks;
    for (const KeyGrab& grab : meanings.grabs(shortcut))
        for (const XModifierMask mask : grab.masks)
            if ((mask & meanings.lockBits()) == 0) masks.insert(mask);
    return masks;
}

TEST(KeyCodes, EveryKeyHasOneCodeAndEveryCodeLeadsBack) {
    for (std::uint16_t code = 1; code < 248; ++code)
        EXPECT_THAT(key_codes::linuxKeyCodes(key_codes::virtualKeyCode(code)), testing::Contains(code));
    EXPECT_EQ(key_codes::virtualKeyCode(KEY_SPACE), 49);
    EXPECT_THAT(key_codes::linuxKeyCodes(105), UnorderedElementsAre(KEY_F13, KEY_SYSRQ));
    EXPECT_THAT(key_codes::linuxKeyCodes(65535), ElementsAre());
    for (const ModifierKey key : allModifierKeys)
        EXPECT_FALSE(key_codes::linuxKeyCodes(keyCode(key)).empty());
}

TEST(KeyMeanings, ModifiersGoByPositionUnlessTheKeymapRenamesThem) {
    struct Case {
        const char* layout;
        const char* options;
        unsigned key;
        std::optional<ModifierKey> expected;
    };
    const Case cases[] = {
        {"us", "", KEY_SPACE, std::nullopt},
        {"us", "altwin:swap_alt_win", KEY_LEFTALT, ModifierKey::leftCommand},
        {"us", "ctrl:nocaps", KEY_CAPSLOCK, ModifierKey::leftControl},
        {"us", "ctrl:swapcaps", KEY_LEFTCTRL, std::nullopt},
        {"us", "", KEY_CAPSLOCK, std::nullopt},
        {"de", "", KEY_RIGHTALT, ModifierKey::rightOption},
        {"us", "lv3:rwin_switch", KEY_RIGHTMETA, ModifierKey::rightCommand},
        {"us", "lv3:caps_switch", KEY_CAPSLOCK, ModifierKey::rightOption},
        {"kr", "", KEY_RIGHTALT, ModifierKey::rightOption},
        {"us", "", KEY_HANJA, ModifierKey::rightControl},
    };
    for (const Case& c : cases)
        EXPECT_EQ(meaningsOf(c.layout, "", c.options).modifier(xKey(c.key)), c.expected)
            << c.layout << " " << c.options << " key " << c.key;
    EXPECT_TRUE(meaningsOf("us").isCapsLock(xKey(KEY_CAPSLOCK)));
    EXPECT_FALSE(meaningsOf("us", "", "ctrl:nocaps").isCapsLock(xKey(KEY_CAPSLOCK)));
}

TEST(KeyMeanings, GrabsNameTheBitsThatTheKeysReallySet) {
    const ShortcutKey rightOptionSpace{49, {ModifierKey::rightOption}};
    EXPECT_THAT(
        masksWithoutLocks(meaningsOf("us"), {49, {ModifierKey::leftShift, ModifierKey::rightControl}}),
        ElementsAre(shift | control));
    EXPECT_THAT(masksWithoutLocks(meaningsOf("us,de", ","), rightOptionSpace),
                testing::IsSupersetOf({mod1, mod5}))
        << "both layouts, whichever is active";
    EXPECT_THAT(meaningsOf("us").grabs({65535, {}}), ElementsAre());
}

TEST(HeldKeys, AKeyThatChangedItsMeaningWhileHeldStillComesUp) {
    HeldKeys held;
    held.press(64, {.modifier = ModifierKey::leftOption});
    const auto up = held.release(64, {.modifier = ModifierKey::leftCommand});
    ASSERT_TRUE(up);
    EXPECT_EQ(up->keyCode, keyCode(ModifierKey::leftOption));
    EXPECT_EQ(held.flags(), 0U);
}

TEST(KeyMeanings, TellWhatIsPrintedOnRightAltAndRightCtrl) {
    using Alt = PrintedKeys::RightAlt;
    using Ctrl = PrintedKeys::RightCtrl;
    EXPECT_EQ(meaningsOf("us").printed(), PrintedKeys());
    EXPECT_EQ(meaningsOf("de").printed(), (PrintedKeys{Alt::altGr, Ctrl::ctrl}));
    EXPECT_EQ(meaningsOf("us,de").printed().rightAlt, Alt::altGr);
    EXPECT_EQ(meaningsOf("kr", "kr104").printed(), (PrintedKeys{Alt::hangul, Ctrl::hanja}));
    EXPECT_EQ(meaningsOf("us", "", "korean:ralt_hangul").printed().rightAlt, Alt::hangul);
}

} // namespace
