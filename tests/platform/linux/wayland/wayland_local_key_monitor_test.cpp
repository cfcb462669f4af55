// The key monitor with events as the toolkit makes them of a compositor's: what it reports, and what a text
// field still gets. That a real compositor's keys arrive like this is for the tests of whole programs.
#include "platform/linux/wayland/wayland_local_key_monitor.h"

#include "support/qt_waiting.h"

#include <QLineEdit>
#include <QTest>
#include <QWindow>
#include <gmock/gmock.h>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace hopsel::test {
namespace {

using testing::ElementsAre;

struct Key {
    quint32 code; ///< the kernel's
    quint32 symbol;
    int qt;
};
const Key leftShift{42, XKB_KEY_Shift_L, Qt::Key_Shift},
    rightAlt{100, XKB_KEY_ISO_Level3_Shift, Qt::Key_AltGr},
    leftControl{29, XKB_KEY_Control_L, Qt::Key_Control}, space{57, XKB_KEY_space, Qt::Key_Space},
    letter{30, XKB_KEY_a, Qt::Key_A}, capsLock{58, XKB_KEY_Caps_Lock, Qt::Key_CapsLock};

class WaylandKeyMonitor : public testing::Test {
  protected:
    WaylandKeyMonitor() {
        field.show();
        field.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&field));
        monitor.onUnusable = [this](UnusableKey key) { unusable.push_back(key); };
    }

    void start(bool stopsAfterOne = false) {
        monitor.start([this, stopsAfterOne](const LocalKeyDown& down) {
            std::string text = std::to_string(down.keyCode) + (down.isRepeat ? "*" : "");
            for (const ModifierKey held : heldModifiers(down.flags))
                text += " " + std::string(rawValue(held));
            reported.push_back(text);
            if (stopsAfterOne) monitor.stop();
        });
    }
    void send(const Key& key, bool isDown, bool isRepeat = false) {
        const bool types = key.qt == Qt::Key_A || key.qt == Qt::Key_Space;
        const QString text = types ? QString(QChar(key.symbol)) : QString();
        QKeyEvent event(isDown ? QEvent::KeyPress : QEvent::KeyRelease, key.qt, Qt::NoModifier, key.code + 8,
                        key.symbol, 0, text, isRepeat);
        QCoreApplication::sendEvent(field.windowHandle(), &event);
    }
    void tap(const Key& key) {
        send(key, true);
        send(key, false);
    }

    QLineEdit field;
    WaylandLocalKeyMonitor monitor;
    std::vector<std::string> reported;
    std::vector<UnusableKey> unusable;
};

TEST_F(WaylandKeyMonitor, TellsSidesAndKeepsEverythingFromTheFieldUntilTheKeysAreUp) {
    tap(letter);
    start(true);
    send(leftShift, true);
    send(rightAlt, true);
    send(space, true);
    EXPECT_THAT(reported, ElementsAre("49 rightOption leftShift"));
    send(space, true, true); // stopped meanwhile; it goes on repeating
    for (const Key& key : {space, rightAlt, leftShift}) send(key, false);
    tap(letter);
    EXPECT_EQ(field.text(), "aa");
    EXPECT_EQ(reported.size(), 1U);
}

TEST_F(WaylandKeyMonitor, SaysWhatCannotBeATriggerAndForgetsWithTheFocus) {
    start();
    tap(capsLock);
    send(leftShift, true);
    tap(leftControl);
    send(leftShift, false);
    EXPECT_THAT(unusable, ElementsAre(UnusableKey::capsLock, UnusableKey::modifiersTogether));
    send(leftShift, true);
    QLineEdit other; // where its release goes
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    send(letter, true);
    send(letter, true, true);
    EXPECT_THAT(reported, ElementsAre("0", "0*"));
    const Key unknown{9000, XKB_KEY_a, Qt::Key_A};
    tap(unknown);
    EXPECT_EQ(reported.size(), 2U);
    EXPECT_TRUE(field.text().isEmpty());
}

} // namespace
} // namespace hopsel::test
