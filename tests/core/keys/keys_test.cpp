// What real key streams do is told by the engine's scenarios; here are the tables, keyboards with odd flags,
// and times that only a test can make up.
#include "core/keys/event_normalizer.h"
#include "core/keys/key_state_machine.h"
#include "core/keys/shortcut_policy.h"

#include <gtest/gtest.h>
#include <limits>

namespace hopsel {
namespace {

using enum ModifierKey;
using namespace key_event_kind;

TEST(ModifierKeys, HaveTheNamesCodesAndFlagsOfThePlatform) {
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
    EXPECT_FALSE(modifierKeyFromKeyCode(capsLockKeyCode));
    EXPECT_TRUE(heldModifiers(0x1E0000).empty()) << "sides are never guessed";
}

TEST(Normalizer, TellsTheSidesApartAndTogglesWhereNoneIsTold) {
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

TEST(KeyStateMachine, CountsATapWithinItsLimitsOnly) {
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

TEST(ShortcutText, IsReadLenientlyAndWrittenInOneWay) {
    const std::tuple<ShortcutKey, const char*, const char*> rows[]{
        {{49, {rightShift, leftShift}}, "49|leftShift,rightShift", "+0049|rightShift,leftShift,leftShift"},
        {{0, {}}, "0|", "-00|"}};
    for (const auto& [key, text, lenient] : rows) {
        EXPECT_EQ(key.storageString(), text);
        EXPECT_EQ(ShortcutKey::fromStorageString(lenient), key) << lenient;
    }
    for (const char* text : {"", "49", "|leftShift", "+-0|", "-1|", "65536|", " 49|", "4x|", "49|leftShift,",
                             "49|LeftShift", "49|leftShift|"})
        EXPECT_EQ(ShortcutKey::fromStorageString(text), std::nullopt) << text;
}

TEST(ShortcutPolicy, TakesNoKeyThatTypesWithoutACommandingModifier) {
    struct {
        std::uint16_t code;
        bool alone, withTyping, withCommanding;
    } const rows[]{{0, false, false, true},  {96, true, true, true},   {90, true, true, true},
                   {49, false, true, true},  {36, false, true, true},  {126, false, true, true},
                   {24, false, false, true}, {54, false, false, false}};
    for (const auto& row : rows) {
        const auto isAllowed = [&](ModifierSet with) { return shortcut_policy::isAllowed({row.code, with}); };
        EXPECT_EQ(isAllowed({}), row.alone) << row.code;
        EXPECT_EQ(isAllowed({rightOption, rightShift}), row.withTyping) << row.code;
        EXPECT_EQ(isAllowed({rightControl, leftShift}), row.withCommanding) << row.code;
    }
}

} // namespace
} // namespace hopsel
