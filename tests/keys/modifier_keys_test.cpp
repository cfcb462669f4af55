// What real key streams do is told by the engine's scenarios; here are the tables, keyboards with odd flags,
// and times that only a test can make up.
#include "core/keys/event_normalizer.h"
#include "core/keys/key_state_machine.h"

#include <gmock/gmock.h>
#include <limits>

namespace hopsel {
namespace {

using enum ModifierKey;
using namespace key_event_kind;

TEST(ModifierKeys, haveTheNamesCodesAndFlagsOfThePlatform) {
    struct Row {
        const char* name;
        std::uint16_t code;
        std::uint64_t flags;
    };
    const Row rows[]{
        {"leftCommand", 55, 0x100008}, {"rightCommand", 54, 0x100010}, {"leftOption", 58, 0x80020},
        {"rightOption", 61, 0x80040},  {"leftShift", 56, 0x20002},     {"rightShift", 60, 0x20004},
        {"leftControl", 59, 0x40001},  {"rightControl", 62, 0x42000},
    };
    for (ModifierKey key : allModifierKeys) {
        const Row& row = rows[static_cast<std::size_t>(key)];
        EXPECT_EQ(rawValue(key), row.name);
        EXPECT_EQ(modifierKeyFromRawValue(row.name), key);
        EXPECT_EQ(modifierKeyFromKeyCode(row.code), key);
        EXPECT_EQ(flagsOf({key}), row.flags) << row.name;
        EXPECT_EQ(heldModifiers(row.flags | capsLockFlag), ModifierSet{key}) << row.name;
    }
    for (const char* wrong : {"LeftCommand", "left", ""})
        EXPECT_FALSE(modifierKeyFromRawValue(wrong)) << wrong;
    for (std::uint16_t code = 0; code < 54; ++code) EXPECT_FALSE(modifierKeyFromKeyCode(code)) << code;
    EXPECT_FALSE(modifierKeyFromKeyCode(capsLockKeyCode));
    EXPECT_TRUE(heldModifiers(0x1E0000).empty()) << "sides are never guessed";
}

TEST(ModifierKeys, areSortedByName) {
    EXPECT_THAT(sortedNames({leftShift, rightCommand, leftControl}),
                testing::ElementsAre("leftControl", "leftShift", "rightCommand"));
}

class Normalizer : public testing::Test {
  protected:
    std::optional<KeyEventKind> flagsChanged(std::uint16_t code, std::uint64_t flags) {
        const std::optional<KeyEvent> event =
            normalizer.normalize({RawEventType::flagsChanged, code, flags, 0, false});
        if (!event) return std::nullopt;
        EXPECT_EQ(event->held, normalizer.held()) << "the event carries the repaired set";
        return event->kind;
    }

    const KeyEventKind leftDown = ModifierDown{leftCommand};
    const KeyEventKind leftUp = ModifierUp{leftCommand};
    const KeyEventKind rightDown = ModifierDown{rightCommand};
    EventNormalizer normalizer;
};

TEST_F(Normalizer, tellsTheSidesOfAFamilyApart) {
    EXPECT_EQ(flagsChanged(55, 0x100008), leftDown);
    EXPECT_EQ(flagsChanged(54, 0x100018), rightDown);
    EXPECT_EQ(flagsChanged(54, 0x100018), rightDown) << "a repeated press is one again";
    EXPECT_EQ(flagsChanged(55, 0x100010), leftUp);
    EXPECT_EQ(flagsChanged(55, 0x100010), std::nullopt) << "never seen going down";
    EXPECT_EQ(normalizer.held(), ModifierSet{rightCommand});
}

TEST_F(Normalizer, togglesKeysOfAKeyboardWithoutSides) {
    EXPECT_EQ(flagsChanged(55, 0x100000), leftDown);
    EXPECT_EQ(flagsChanged(54, 0x100000), rightDown);
    EXPECT_EQ(flagsChanged(55, 0x100000), leftUp);
    EXPECT_EQ(normalizer.held(), ModifierSet{rightCommand});
}

TEST_F(Normalizer, everyEventRepairsALostRelease) {
    const std::pair<std::uint64_t, bool> rows[]{
        {0, false}, {0x20000, true}, {0x20002, true}, {0x20004, false}};
    for (RawEventType type :
         {RawEventType::flagsChanged, RawEventType::keyDown, RawEventType::keyUp, RawEventType::mouseDown}) {
        for (const auto& [flags, staysHeld] : rows) {
            normalizer.reset();
            flagsChanged(keyCode(leftShift), 0x20002);
            const auto event = normalizer.normalize({type, capsLockKeyCode, flags, 0, false});
            EXPECT_EQ(event.has_value(), type != RawEventType::flagsChanged);
            EXPECT_EQ(normalizer.held().contains(leftShift), staysHeld) << flags;
        }
    }
}

TEST(KeyStateMachine, countsATapWithinItsLimitsOnly) {
    KeyStateMachine machine({rightCommand}, 0.5);
    const std::pair<double, bool> rows[]{{10, true},
                                         {10.5, true},
                                         {10.5001, false},
                                         {9.9, false},
                                         {std::numeric_limits<double>::quiet_NaN(), false}};
    const Decision fires = decision::SwitchTriggered{rightCommand};
    const Decision passes = decision::PassThrough{};
    for (const auto& [up, isTap] : rows) {
        machine.handle({ModifierDown{rightCommand}, {rightCommand}, 1}, false);
        machine.handle({ModifierDown{rightCommand}, {rightCommand}, 10},
                       false); // a second press restarts the time
        EXPECT_EQ(machine.handle({ModifierUp{rightCommand}, {}, up}, false), isTap ? fires : passes) << up;
        EXPECT_EQ(machine.handle({ModifierUp{rightCommand}, {}, 10.1}, false), passes) << "it is up already";
    }
}

TEST(KeyStateMachine, dropsAKeyThatAnEventShowsToBeUp) {
    KeyStateMachine machine({rightCommand}, 0.5);
    machine.handle({ModifierDown{rightCommand}, {rightCommand}, 10}, false);
    machine.handle({KeyUp{}, {}, 10.1}, false);
    EXPECT_EQ(machine.handle({ModifierUp{rightCommand}, {}, 10.2}, false), Decision{decision::PassThrough{}});
}

} // namespace
} // namespace hopsel
