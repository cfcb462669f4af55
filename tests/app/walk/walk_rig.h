// A desktop with a panel, three layouts and an empty home, the program in it, and a person who uses it by
// what is written on the screen.
#pragma once

#include "core/rules/temporary_folder.h"
#include "session/fcitx_session.h"
#include "session/ibus_session.h"
#include "session/private_bus.h"
#include "session/screen_reader.h"
#include "session/x_keyboard.h"
#include "session/x_layouts.h"
#include "session/x_server.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hopsel::test {

class Walk : public testing::Test {
  protected:
    enum class Framework { none, ibus, fcitx };

    /// With a framework, its real daemon runs already, with English and Korean.
    explicit Walk(bool withPanel = true, Framework framework = Framework::none);

    /// The program, with nothing but the folders of this home.
    session::ChildProcess::Options program() const;
    void start(const std::vector<std::string>& arguments = {});
    /// While it runs; false if the second copy does not leave at once, all being well.
    bool startAgain(const std::vector<std::string>& arguments = {}) const;
    void startWithoutIntroduction();

    // Each waits for what it needs, and fails the test if that does not come.

    void click(const std::string& name);
    void expectSeen(const std::string& name);
    void expectGone(const std::string& name);
    /// As often as a person would try.
    void expectSwitched(int group, const std::function<void()>& press);
    void expectEnded();
    /// The item so many lines from the menu's end, chosen with the keyboard.
    void chooseFromTray(int fromTheEnd);
    /// The same for the item that ends the program. The key stays down: the toolkit asks the bus about each
    /// key before it goes on with it, and does not free one that still waits at the end, which the leak
    /// checker sees.
    void quitFromTray(int fromTheEnd);

    void point(const session::SeenWidget& widget);
    /// For a menu or a list to be open, with the keyboard its own: keys sent earlier would miss it.
    bool waitForPopup(std::chrono::milliseconds timeout = std::chrono::seconds(10)) const;

    bool sees(const std::string& name) const { return reader.find(name).has_value(); }
    std::string settings() const;
    void tapTrigger() { keyboard.tap(session::key::rightSuper); }
    void pressWith(std::uint16_t modifier, std::uint16_t code);
    void pressShiftSpace() { pressWith(session::key::leftShift, session::key::space); }

    session::XServer server;
    session::XLayouts layouts;
    session::XKeyboard keyboard;
    Framework framework;
    std::string locale = "C.UTF-8";           ///< of the desktop
    std::unique_ptr<session::PrivateBus> bus; ///< one of them, so that one session is there
    std::unique_ptr<session::IbusSession> ibus;
    std::unique_ptr<session::FcitxSession> fcitx;
    session::AccessibilityBus accessibility;
    session::ScreenReader reader{"hopsel"};
    session::TemporaryFolder home; ///< the frameworks' sessions have a home of their own
    std::unique_ptr<session::ChildProcess> running;

  private:
    void pressInTray(int fromTheEnd);
};

} // namespace hopsel::test
