// The lone tap of a trigger and those who act on it too: a launcher, a menu bar. What is typed next belongs
// to the field.
#include "live_engine.h"
#include "session/lone_tap_launcher.h"

#include <QString>
#include <xkbcommon/xkbcommon-keysyms.h>

using namespace hopsel;
using namespace hopsel::test;
using namespace std::chrono_literals;

namespace {

constexpr int taps = 200;

/// What a field holds after an "a" behind each tap.
std::string lettersAfterTaps() {
    std::string text;
    for (int tap = 0; tap < taps; ++tap) text += tap % 2 == 0 ? "ф" : "a";
    return text;
}

class TapGuard : public LiveEngine {
  protected:
    void toggleWith(ModifierKey key) {
        engine->apply({.schemaVersion = 2,
                       .rules = {Rule::make(trigger::ModifierTap{key}, action::Toggle{english, russian})}});
    }
    /// As slow as a finger: the key comes up after the guard has seen it go down.
    void press(std::uint16_t code) {
        keyboard->press(code);
        ASSERT_TRUE(runLoopUntil([&] { return hook->isBusy(code); }));
        hook->resynchronise();
    }
    void tapAndType(std::uint16_t trigger, std::size_t number) {
        press(trigger);
        keyboard->release(trigger);
        ASSERT_TRUE(switchesReach(number));
    }
    std::string keys() {
        window->records();
        return window->keys();
    }
};

TEST_F(TapGuard, KeepsALauncherShutAndEveryLetterInItsField) {
    LoneTapLauncher launcher;
    for (int tap = 1; tap <= taps; ++tap) {
        tapAndType(key::rightSuper, static_cast<std::size_t>(tap));
        ASSERT_EQ(launcher.timesOpened(), 0) << tap;
        keyboard->tap(key::a);
    }
    EXPECT_TRUE(window->waitForText(lettersAfterTaps()));

    engine->setGuardsTaps(false);
    tapAndType(key::rightSuper, taps + 1);
    EXPECT_EQ(launcher.timesOpened(), 1) << "as the user wishes; and this launcher does open";
}

TEST_F(TapGuard, KeepsAMenuBarFromTakingTheLetters) {
    toggleWith(ModifierKey::rightOption);
    ChildProcess::Options options;
    options.program = HOPSEL_MENU_PROGRAM;
    options.output = ChildProcess::Output::capture;
    ChildProcess program(options);
    const Deadline deadline(10s);
    do { // until its field has the focus; what it gets before goes with the line
        ASSERT_FALSE(deadline.hasPassed());
        keyboard->tap(key::x);
    } while (!program.waitForLine("text ", 100ms));
    keyboard->tap(key::q);
    const auto before = program.waitForLine("q", 5s);
    ASSERT_TRUE(before);
    for (int tap = 1; tap <= taps; ++tap) {
        tapAndType(key::rightAlt, static_cast<std::size_t>(tap));
        keyboard->tap(key::a);
    }
    EXPECT_TRUE(program.waitForLine(*before + lettersAfterTaps(), 10s));
}

TEST_F(TapGuard, TapsNothingWhereNoLoneTapIsPossibleOrNobodyActsOnOne) {
    const auto pressAndRelease = [&](std::vector<std::uint16_t> held, std::uint16_t code) {
        for (const auto key : held) press(key);
        press(code);
        keyboard->release(code);
        for (const auto key : held) keyboard->release(key);
    };
    const auto expectGuardKey = [&](std::uint16_t code) {
        window->records();
        window->clear();
        pressAndRelease({}, key::rightSuper);
        const std::string guard = std::to_string(code);
        EXPECT_EQ(keys(), "+126 +" + guard + " -" + guard + " -126") << "once, between the two";
    };
    const std::uint16_t guardKey = hook->silentKey().value();
    expectGuardKey(guardKey);
    window->clear();
    pressAndRelease({key::leftControl}, key::rightSuper);
    pressAndRelease({}, key::leftSuper);
    EXPECT_EQ(keys(), "+29 +126 -126 -29 +125 -125");
    toggleWith(ModifierKey::rightControl);
    window->clear();
    pressAndRelease({}, key::rightControl);
    EXPECT_EQ(keys(), "+97 -97");
    // A key that a layout gives a meaning is none to press unasked.
    XDisplay display;
    constexpr xcb_keysym_t someSymbol = XKB_KEY_F24;
    xcb_change_keyboard_mapping(display.get(), 1, static_cast<xcb_keycode_t>(guardKey + 8), 1, &someSymbol);
    display.roundTrip();
    toggleWith(ModifierKey::rightCommand);
    ASSERT_TRUE(runLoopUntil([&] { return hook->silentKey() != guardKey; }));
    expectGuardKey(hook->silentKey().value());
}

TEST(TapGuardKey, IsControlForTheDesktopThatLooksAtSymbols) {
    EXPECT_EQ(X11TapGuard::keyFor("X-Cinnamon"), X11TapGuard::Key::control);
    for (const char* desktop : {"", "KDE", "ubuntu:GNOME", "XFCE"})
        EXPECT_EQ(X11TapGuard::keyFor(desktop), X11TapGuard::Key::silent) << desktop;
}

} // namespace
