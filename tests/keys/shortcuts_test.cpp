#include "core/keys/shortcut_matcher.h"
#include "core/keys/shortcut_policy.h"

#include <gtest/gtest.h>

namespace hopsel {
namespace {

using enum ModifierKey;

TEST(ShortcutText, isTheSameForEqualKeysAndReadBack) {
    const std::pair<ShortcutKey, const char*> rows[]{
        {{49, {rightShift, leftCommand}}, "49|leftCommand,rightShift"},
        {{96, {}}, "96|"},
        {{65535, {rightControl}}, "65535|rightControl"},
    };
    for (const auto& [key, text] : rows) {
        EXPECT_EQ(key.storageString(), text);
        EXPECT_EQ(ShortcutKey::fromStorageString(text), key) << text;
    }
}

TEST(ShortcutText, isReadLeniently) {
    const std::pair<const char*, ShortcutKey> rows[]{
        {"+49|", {49, {}}},
        {"-00|", {0, {}}},
        {"0049|leftShift,leftCommand,leftShift", {49, {leftCommand, leftShift}}},
    };
    for (const auto& [text, key] : rows) EXPECT_EQ(ShortcutKey::fromStorageString(text), key) << text;
}

TEST(ShortcutText, refusesWhatItNeverWrites) {
    for (const char* text :
         {"", "49", "|", "|leftShift", "+|", "-|", "+-0|", "-1|", "65536|", "99999999999999999999|", " 49|",
          "4x|", "49|leftShift,", "49|,leftShift", "49|LeftShift", "49|leftShift|", "49| leftShift"}) {
        EXPECT_EQ(ShortcutKey::fromStorageString(text), std::nullopt) << text;
    }
}

TEST(ShortcutPolicy, followsTheKindOfKeyAndModifier) {
    constexpr std::uint16_t letter = 0;
    constexpr std::uint16_t space = 49;
    constexpr std::uint16_t f5 = 96;
    const std::pair<ShortcutKey, bool> rows[]{
        {{letter, {}}, false},
        {{letter, {rightOption, leftShift}}, false},
        {{letter, {leftCommand}}, true},
        {{letter, {rightControl, leftShift}}, true},
        {{space, {}}, false},
        {{space, {leftShift}}, true},
        {{f5, {}}, true},
        {{f5, {rightOption}}, true},
        {{keyCode(leftShift), {leftCommand}}, false},
        {{keyCode(rightControl), {}}, false},
        {{capsLockKeyCode, {leftControl}}, true},
        {{capsLockKeyCode, {leftShift}}, false},
    };
    for (const auto& [key, isAllowed] : rows) {
        EXPECT_EQ(shortcut_policy::isAllowed(key), isAllowed) << key.storageString();
    }
}

TEST(ShortcutMatcher, keepsSwallowedKeysApart) {
    const auto down = ShortcutInput::Kind::keyDown;
    const auto up = ShortcutInput::Kind::keyUp;
    ShortcutMatcher matcher({{96, {}}, {97, {}}});
    EXPECT_EQ(matcher.handle({down, 96}).fire, (ShortcutKey{96, {}}));
    EXPECT_EQ(matcher.handle({down, 97}).fire, (ShortcutKey{97, {}}));
    EXPECT_TRUE(matcher.handle({up, 96}).consume);
    EXPECT_FALSE(matcher.handle({up, 96}).consume);
    EXPECT_EQ(matcher.handle({down, 97, 0, true}), (ShortcutDecision{true, std::nullopt}));
    matcher.reset();
    EXPECT_FALSE(matcher.handle({up, 97}).consume);
}

} // namespace
} // namespace hopsel
