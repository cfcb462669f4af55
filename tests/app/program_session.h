// The X session in which tests start the program: two layouts, a window manager, a panel, a keyboard, and a
// window that records.
#pragma once

#include "session/hopsel_program.h"
#include "session/x_keyboard.h"
#include "session/x_layouts.h"
#include "session/x_server.h"
#include "session/x_window.h"

#include <gtest/gtest.h>
#include <memory>

namespace hopsel::test {

using namespace session;
using namespace std::chrono_literals;

inline constexpr auto patience = 10s;

class Session : public testing::Test {
  protected:
    Session() {
        setLayouts("us,ru");
        server.startWindowManager();
        server.startPanel();
        window = std::make_unique<XTestWindow>();
    }

    bool tapsUntilGroup(int group) {
        const Deadline deadline(patience);
        while (!layouts.waitForGroup(group, 400ms)) {
            if (deadline.hasPassed()) return false;
            keyboard.tap(key::rightSuper);
        }
        return true;
    }
    bool shiftSpaceSwitchesTo(int group) {
        const Deadline deadline(patience);
        do typeShiftSpace();
        while (!layouts.waitForGroup(group, 400ms) && !deadline.hasPassed());
        return layouts.lockedGroup() == group;
    }
    void typeShiftSpace() {
        keyboard.press(key::leftShift);
        keyboard.tap(key::space);
        keyboard.release(key::leftShift);
    }
    /// A keyboard on which nothing is grabbed, swallowed or stuck.
    void expectPlainKeyboard() {
        layouts.lockGroup(0);
        window->records();
        window->clear();
        typeShiftSpace();
        keyboard.tap(key::rightSuper);
        keyboard.tap(key::a);
        EXPECT_TRUE(window->waitForText(" a"));
        EXPECT_EQ(layouts.lockedGroup(), 0);
    }

    XServer server;
    XLayouts layouts;
    XKeyboard keyboard;
    std::unique_ptr<XTestWindow> window;
};

} // namespace hopsel::test
