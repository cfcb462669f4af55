// The key monitor against a real X server: what it reports, and what a text field still gets.
#include "platform/linux/x11/x11_local_key_monitor.h"

#include "platform/linux/keys/key_codes.h"
#include "platform/linux/x11/x11_input_devices.h"
#include "platform/linux/x11/x11_keymap.h"
#include "session/x_keyboard.h"
#include "session/x_layouts.h"
#include "session/x_window.h"
#include "support/qt_waiting.h"

#include <QLineEdit>
#include <QTest>
#include <gmock/gmock.h>

namespace hopsel::test {
namespace {

using namespace session;
using testing::ElementsAre;

/// The keys that reach the field as Qt events.
class Field final : public QLineEdit {
  public:
    std::vector<std::string> events;

  protected:
    void keyPressEvent(QKeyEvent* event) override {
        note(event->isAutoRepeat() ? "*" : "+", *event);
        QLineEdit::keyPressEvent(event);
    }
    void keyReleaseEvent(QKeyEvent* event) override {
        if (!event->isAutoRepeat()) note("-", *event);
        QLineEdit::keyReleaseEvent(event);
    }

  private:
    void note(const char* kind, const QKeyEvent& event) {
        events.push_back(kind + std::to_string(event.nativeScanCode() - 8));
    }
};

class KeyMonitor : public testing::Test {
  protected:
    KeyMonitor() {
        field.show();
        takeFocus();
    }

    /// Returns when keys reach the field; those that it took are forgotten. Being active is not enough: the
    /// window manager may still be handing the focus around.
    void takeFocus() {
        field.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&field));
        EXPECT_TRUE(runLoopUntil([&] {
            keyboard.tap(key::x);
            return !field.events.empty();
        }));
        type(key::z);
        field.clear();
        field.events.clear();
    }

    void start() {
        monitor.start([this](const LocalKeyDown& down) {
            std::string text = std::to_string(down.keyCode) + (down.isRepeat ? "*" : "");
            for (const ModifierKey held : heldModifiers(down.flags))
                text += " " + std::string(rawValue(held));
            reported.push_back(text);
            if (stopsAfterOne) monitor.stop();
        });
    }
    /// Types the key and waits until the field has it; everything typed before has arrived then.
    void type(std::uint16_t code) {
        keyboard.tap(code);
        const std::string last = "-" + std::to_string(code);
        EXPECT_TRUE(runLoopUntil([&] { return !field.events.empty() && field.events.back() == last; }));
    }
    bool waitForReports(std::size_t count) {
        return runLoopUntil([&] { return reported.size() >= count; });
    }

    XKeyboard keyboard;
    Field field;
    X11LocalKeyMonitor monitor;
    std::vector<std::string> reported;
    bool stopsAfterOne = false;
};

TEST_F(KeyMonitor, SaysAtOnceWhatCannotBeATrigger) {
    std::vector<UnusableKey> told;
    monitor.onUnusable = [&](UnusableKey key) { told.push_back(key); };
    start();
    keyboard.tap(key::capsLock);
    keyboard.press(key::leftShift); // one alone is the engine's to tell
    keyboard.release(key::leftShift);
    keyboard.press(key::leftControl);
    keyboard.press(key::leftShift);
    keyboard.release(key::leftControl);
    keyboard.release(key::leftShift);
    ASSERT_TRUE(runLoopUntil([&] { return told.size() >= 2; }));
    keyboard.press(key::leftControl);
    keyboard.press(key::leftShift);
    keyboard.tap(key::space);
    keyboard.release(key::leftShift);
    keyboard.release(key::leftControl);
    ASSERT_TRUE(waitForReports(1));
    monitor.stop();
    type(key::q);
    EXPECT_THAT(told, ElementsAre(UnusableKey::capsLock, UnusableKey::modifiersTogether));
}

TEST_F(KeyMonitor, TellsSidesAndKeepsEverythingFromTheField) {
    start();
    for (const std::uint16_t shift : {key::leftShift, key::rightShift}) {
        keyboard.press(shift);
        keyboard.tap(key::space);
        keyboard.release(shift);
    }
    X11Connection connection;
    x11_input_devices::requireXkb(connection);
    const XKeyCode guardKey = x11_keymap::readMeanings(connection).silentKey().value();
    keyboard.tap(static_cast<std::uint16_t>(guardKey - key_codes::x11Offset));
    keyboard.tap(key::escape);
    ASSERT_TRUE(waitForReports(3));
    setLayouts("us", {}, "altwin:swap_alt_win");
    start();
    keyboard.press(key::leftAlt);
    keyboard.tap(key::f5);
    keyboard.release(key::leftAlt);
    ASSERT_TRUE(waitForReports(4));
    EXPECT_THAT(reported, ElementsAre("49 leftShift", "49 rightShift", "53", "96 leftCommand"));
    monitor.stop();
    setLayouts("us");
    type(key::a);
    EXPECT_EQ(field.text(), "a");
    EXPECT_THAT(field.events, ElementsAre("+30", "-30")) << "nothing of what was pressed before";
}

TEST_F(KeyMonitor, RecognisesRepeatsAndSwallowsThemToTheEnd) {
    stopsAfterOne = true;
    start();
    keyboard.press(key::leftShift);
    keyboard.press(key::space);
    ASSERT_TRUE(waitForReports(1));
    // Stopped inside the report; the key goes on repeating and must not type, nor its release arrive alone.
    EXPECT_TRUE(staysFalse([&] { return !field.events.empty(); }, std::chrono::milliseconds(900)));
    keyboard.release(key::space);
    keyboard.release(key::leftShift);
    type(key::space);
    type(key::b);
    EXPECT_EQ(field.text(), " b");
    EXPECT_THAT(reported, ElementsAre("49 leftShift"));
}

TEST_F(KeyMonitor, LeavesKeysThatWereDownBeforeToTheField) {
    keyboard.press(key::rightShift);
    keyboard.press(key::a);
    ASSERT_TRUE(runLoopUntil([&] { return field.events.size() == 2; }));
    start();
    ASSERT_TRUE(waitForReports(1));
    EXPECT_EQ(reported.front(), "0* rightShift") << "still held: a repeat";
    keyboard.release(key::a);
    ASSERT_TRUE(runLoopUntil([&] { return field.events.back() == "-30"; }));
    const std::size_t repeats = reported.size();
    keyboard.tap(key::space);
    ASSERT_TRUE(waitForReports(repeats + 1));
    EXPECT_EQ(reported.back(), "49 rightShift") << "known from the server, for no event told";
    keyboard.release(key::rightShift);
    monitor.stop();
    type(key::b);
    EXPECT_EQ(field.text(), "Ab");
    // Qt may take the first half of a repeat for a release of its own.
    field.events.erase(std::unique(field.events.begin(), field.events.end()), field.events.end());
    EXPECT_THAT(field.events, ElementsAre("+54", "+30", "-30", "-54", "+48", "-48"));
}

TEST_F(KeyMonitor, LearnsWhatHappenedWhileAnotherWindowHadTheFocus) {
    start();
    keyboard.press(key::leftShift);
    keyboard.press(key::c);
    ASSERT_TRUE(waitForReports(1));
    monitor.stop();
    {
        const XTestWindow other;
        ASSERT_TRUE(runLoopUntil([&] { return !field.isActiveWindow(); }));
        keyboard.release(key::c);
        keyboard.release(key::leftShift);
    }
    takeFocus();
    type(key::c);
    EXPECT_EQ(field.text(), "c") << "a fresh press, not a repeat of the one that was swallowed";
}

} // namespace
} // namespace hopsel::test
