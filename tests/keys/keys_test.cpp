// What real key streams do is told by the engine's scenarios; here are the tables, keyboards with odd flags,
// and times that only a test can make up.
#include "core/keys/event_normalizer.h"
#include "core/keys/key_state_machine.h"
#include "core/keys/shortcut_matcher.h"
#include "core/keys/shortcut_policy.h"

#include <gtest/gtest.h>
#include <limits>
#include <set>

namespace hopsel {
namespace {

using enum ModifierKey;
using namespace key_event_kind;

TEST(ModifierKeys, haveTheNamesCodesAndFlagsOfThePlatform) {
    const std::tuple<ModifierKey, const char*, std::uint16_t, std::uint64_t> rows[]{
        {leftCommand, "leftCommand", 55, 0x100008}, {rightCommand, "rightCommand", 54, 0x100010},
        {leftOption, "leftOption", 58, 0x80020},    {rightOption, "rightOption", 61, 0x80040},
        {leftShift, "leftShift", 56, 0x20002},      {rightShift, "rightShift", 60, 0x20004},
        {leftControl, "leftControl", 59, 0x40001},  {rightControl, "rightControl", 62, 0x42000}};
    for (const auto& [key, name, code, flags] : rows) {
        EXPECT_EQ(rawValue(key), name);
        EXPECT_EQ(modifierKeyFromRawValue(name), key);
        EXPECT_EQ(modifierKeyFromKeyCode(code), key);
        EXPECT_EQ(flagsOf({key}), flags) << name;
        EXPECT_EQ(heldModifiers(flags | capsLockFlag), ModifierSet{key}) << name;
    }
    for (const char* wrong : {"LeftCommand", "left", ""})
        EXPECT_FALSE(modifierKeyFromRawValue(wrong)) << wrong;
    for (std::uint16_t code = 0; code < 54; ++code) EXPECT_FALSE(modifierKeyFromKeyCode(code)) << code;
    EXPECT_FALSE(modifierKeyFromKeyCode(capsLockKeyCode));
    EXPECT_TRUE(heldModifiers(0x1E0000).empty()) << "sides are never guessed";
}

TEST(Normalizer, tellsTheSidesApartAndTogglesWhereNoneIsTold) {
    const std::tuple<std::uint16_t, std::uint64_t, std::optional<KeyEventKind>, ModifierSet> rows[]{
        {55, 0x100008, ModifierDown{leftCommand}, {leftCommand}},
        {54, 0x100018, ModifierDown{rightCommand}, {leftCommand, rightCommand}},
        {54, 0x100018, ModifierDown{rightCommand}, {leftCommand, rightCommand}}, // pressed again
        {55, 0x100010, ModifierUp{leftCommand}, {rightCommand}},
        {55, 0x100010, std::nullopt, {rightCommand}}, // never seen going down
        {54, 0, ModifierUp{rightCommand}, {}},
        {55, 0x100000, ModifierDown{leftCommand}, {leftCommand}}, // a keyboard without sides
        {54, 0x100000, ModifierDown{rightCommand}, {leftCommand, rightCommand}},
        {55, 0x100000, ModifierUp{leftCommand}, {rightCommand}}};
    EventNormalizer normalizer;
    for (const auto& [code, flags, kind, held] : rows) {
        const auto event = normalizer.normalize({RawEventType::flagsChanged, code, flags, 0, false});
        const auto expected = kind ? std::optional(KeyEvent{*kind, held, 0}) : std::nullopt;
        EXPECT_EQ(event, expected) << code << " " << flags;
        EXPECT_EQ(normalizer.held(), held) << code << " " << flags;
    }
}

TEST(Normalizer, everyEventRepairsALostRelease) {
    const std::pair<std::uint64_t, bool> rows[]{
        {0, false}, {0x20000, true}, {0x20002, true}, {0x20004, false}};
    for (int type = 0; type < 4; ++type) {
        for (const auto& [flags, staysHeld] : rows) {
            EventNormalizer normalizer;
            normalizer.normalize({RawEventType::flagsChanged, keyCode(leftShift), 0x20002, 0, false});
            normalizer.normalize({RawEventType(type), capsLockKeyCode, flags, 0, false});
            EXPECT_EQ(normalizer.held().contains(leftShift), staysHeld) << type << " " << flags;
        }
    }
}

TEST(KeyStateMachine, countsATapWithinItsLimitsOnly) {
    KeyStateMachine machine({rightCommand}, 0.5);
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    const std::pair<double, bool> rows[]{
        {10, true}, {10.5, true}, {10.5001, false}, {9.9, false}, {notANumber, false}};
    const Decision passes = decision::PassThrough{};
    for (const auto& [up, isTap] : rows) {
        machine.handle({ModifierDown{rightCommand}, {rightCommand}, 1}, false);
        machine.handle({ModifierDown{rightCommand}, {rightCommand}, 10}, false); // restarts the time
        const Decision expected = isTap ? Decision{decision::SwitchTriggered{rightCommand}} : passes;
        EXPECT_EQ(machine.handle({ModifierUp{rightCommand}, {}, up}, false), expected) << up;
        EXPECT_EQ(machine.handle({ModifierUp{rightCommand}, {}, 10.1}, false), passes) << "it is up already";
    }
}

TEST(ShortcutText, isTheSameForEqualKeysAndReadBackLeniently) {
    const std::tuple<ShortcutKey, const char*, const char*> rows[]{
        {{49, {rightShift, leftShift}}, "49|leftShift,rightShift", "+0049|rightShift,leftShift,leftShift"},
        {{0, {}}, "0|", "-00|"},
        {{65535, {rightControl}}, "65535|rightControl", "065535|rightControl"}};
    for (const auto& [key, text, lenient] : rows) {
        EXPECT_EQ(key.storageString(), text);
        EXPECT_EQ(ShortcutKey::fromStorageString(text), key) << text;
        EXPECT_EQ(ShortcutKey::fromStorageString(lenient), key) << lenient;
    }
}

TEST(ShortcutText, refusesWhatItNeverWrites) {
    for (const char* text :
         {"", "49", "|", "|leftShift", "+|", "-|", "+-0|", "-1|", "65536|", "99999999999|", " 49|", "4x|",
          "49|leftShift,", "49|,leftShift", "49|LeftShift", "49|leftShift|"})
        EXPECT_EQ(ShortcutKey::fromStorageString(text), std::nullopt) << text;
}

TEST(ShortcutPolicy, followsTheKindOfKeyAndModifier) {
    const std::set<int> functionKeys{122, 120, 99,  118, 96,  97,  98, 100, 101, 109,
                                     103, 111, 105, 107, 113, 106, 64, 79,  80,  90};
    const std::set<int> nonTextKeys{36, 48, 49, 51, 53, 117, 114, 115, 116, 119, 121, 123, 124, 125, 126};
    const std::set<int> modifierKeys{54, 55, 56, 58, 59, 60, 61, 62};
    for (std::uint16_t code = 0; code < 200; ++code) {
        const auto isAllowed = [&](ModifierSet with) { return shortcut_policy::isAllowed({code, with}); };
        const bool isFunction = functionKeys.contains(code);
        EXPECT_EQ(isAllowed({}), isFunction) << code;
        for (ModifierSet typing : {ModifierSet{leftShift}, ModifierSet{rightOption, rightShift}})
            EXPECT_EQ(isAllowed(typing), isFunction || nonTextKeys.contains(code)) << code;
        for (ModifierSet commanding : {ModifierSet{leftCommand}, ModifierSet{rightControl, leftShift}})
            EXPECT_EQ(isAllowed(commanding), !modifierKeys.contains(code)) << code;
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
}

} // namespace
} // namespace hopsel
