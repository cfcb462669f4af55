// The key helper with the kernel's own devices: what the desktop gets, whatever happens to keyboards, session
// and helper.
#include "desktops/keys_machine/virtual_keyboard.h"
#include "platform/linux/keys_helper/helper_process.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>

namespace hopsel {
namespace {

constexpr auto controlSpace = "49|leftControl";

class KeysMachine : public testing::Test {
  protected:
    void start(std::vector<std::string> more = {}) {
        // The desktop of these tests has opened the mirror before it types; a machine in a machine is slow to
        // answer.
        std::vector<std::string> options{"--mirror-settles-in-ms", "0",   "--answer-within-ms", "20000",
                                         "--farewell-ms",          "2000"};
        options.insert(options.end(), more.begin(), more.end());
        helper = std::make_unique<HelperProcess>(options);
        helper->send(to_helper::Hello{});
        EXPECT_EQ(helper->until("held:0"), "welcome:1 held:0");
    }
    /// With the mirror opened.
    void startFiltering(std::vector<std::string> more = {}) {
        start(std::move(more));
        helper->declare({controlSpace});
        helper->until("1/0:on");
        mirror = std::make_unique<DesktopKeyboard>(DesktopKeyboard::mirrorOf("Test"));
    }

    VirtualDevice keyboard{"Test"};
    DesktopKeyboard direct{keyboard.path()};
    std::unique_ptr<HelperProcess> helper;
    std::unique_ptr<DesktopKeyboard> mirror;
};

TEST_F(KeysMachine, AListenerLeavesTheKeyboardToTheDesktop) {
    VirtualDevice mouse("Mouse", VirtualDevice::Kind::mouse);
    start();
    keyboard.type("a+ a- lctrl+ a+ a- lctrl- lctrl+");
    EXPECT_EQ(direct.until("lctrl+"), "a+ a- lctrl+");
    EXPECT_EQ(direct.until("lctrl+"), "a+ a- lctrl- lctrl+");
    EXPECT_EQ(helper->until("lctrl-"), "1/0:off lctrl+ key lctrl-");
    // The wheel comes from another device: after this, and not before.
    EXPECT_EQ(helper->until("lctrl+"), "lctrl+");
    mouse.turnWheel();
    EXPECT_EQ(helper->until("pointer"), "pointer");
}

TEST_F(KeysMachine, AFilterSwallowsWhatItIsToldToAndPassesTheRest) {
    startFiltering();
    keyboard.type("a+ a* a- lctrl+ space+");
    helper->until("?49|leftControl");
    helper->answer(true);
    keyboard.type("space* space- lctrl- lctrl+ space+");
    helper->until("?49|leftControl");
    helper->answer(false);
    keyboard.type("space- lctrl-");
    EXPECT_EQ(mirror->until("space-"), "a+ a* a- lctrl+ lctrl- lctrl+ space+ space-");
    mirror->switchCapsLight();
    EXPECT_EQ(keyboard.shown(), "led 1");
    EXPECT_TRUE(direct.arrived().empty());
}

TEST_F(KeysMachine, NoKeyIsLostWhenNobodyAnswers) {
    startFiltering({"--answer-within-ms", "5"});
    for (int time = 0; time < 3; ++time) {
        keyboard.type("lctrl+ space+ space- a+ a- lctrl-");
        EXPECT_EQ(mirror->until("lctrl-"), "lctrl+ space+ space- a+ a- lctrl-");
    }
    const std::string said = helper->until("1/0:off");
    EXPECT_NE(said.find("late key lctrl- ended"), std::string::npos) << said;
    keyboard.type("b+ b-");
    EXPECT_EQ(direct.until("b-"), "b+ b-");
    helper->declare({controlSpace});
    helper->until("1/0:on");
    keyboard.type("b+ b-");
    EXPECT_EQ(mirror->until("b-"), "b+ b-");
}

TEST_F(KeysMachine, TakesAKeyboardOnlyWhenNothingIsDown) {
    keyboard.type("lalt+");
    helper = std::make_unique<HelperProcess>(std::vector<std::string>{"--mirror-settles-in-ms", "0"});
    helper->send(to_helper::Hello{});
    EXPECT_TRUE(helper->until("held:4").ends_with("held:4"));
    helper->declare({controlSpace});
    EXPECT_TRUE(helper->until("1/0:waiting").ends_with("waiting"));
    keyboard.type("a+ a- lalt-");
    EXPECT_EQ(direct.until("lalt-"), "lalt+ a+ a- lalt-");
    EXPECT_TRUE(helper->until("1/0:on").ends_with("on"));
    // And gives it back so.
    mirror = std::make_unique<DesktopKeyboard>(DesktopKeyboard::mirrorOf("Test"));
    keyboard.type("lalt+");
    helper->until("lalt+");
    helper->declare({});
    EXPECT_EQ(helper->until("1/0:waiting"), "1/0:waiting");
    keyboard.type("a+ a- lalt-");
    EXPECT_EQ(mirror->until("lalt-"), "lalt+ a+ a- lalt-");
    EXPECT_EQ(helper->until("1/0:off"), "key lalt- 1/0:off");
    keyboard.type("b+ b-");
    EXPECT_EQ(direct.until("b-"), "b+ b-");
}

TEST_F(KeysMachine, ADeadHelperLeavesAWorkingKeyboard) {
    startFiltering();
    keyboard.type("lalt+");
    mirror->until("lalt+");
    helper->kill(SIGKILL);
    EXPECT_EQ(helper->waitForExit(), -SIGKILL);
    EXPECT_EQ(mirror->until("gone"), "gone");
    keyboard.type("lalt- a+ a-");
    EXPECT_EQ(direct.until("a-"), "lalt- a+ a-");
}

TEST_F(KeysMachine, AnOrderlyEndLeavesNothingDown) {
    startFiltering();
    keyboard.type("lalt+ a+");
    mirror->until("a+");
    helper->kill(SIGTERM);
    EXPECT_EQ(mirror->until("gone"), "a- lalt- gone");
    EXPECT_EQ(helper->waitForExit(), 0);
    keyboard.type("a- lalt- b+ b-");
    EXPECT_EQ(direct.until("b-"), "a- lalt- b+ b-");
}

TEST_F(KeysMachine, EndsWithItsSessionWhenTheFingersAreOff) {
    startFiltering();
    keyboard.type("lalt+");
    mirror->until("lalt+");
    helper->closeSocket();
    keyboard.type("a+ a- lalt-");
    EXPECT_EQ(mirror->until("gone"), "a+ a- lalt- gone");
    EXPECT_EQ(helper->waitForExit(), 0);
}

TEST_F(KeysMachine, KeyboardsComeAndGo) {
    startFiltering();
    keyboard.type("lalt+");
    mirror->until("lalt+");
    helper->until("lalt+");
    keyboard.unplug();
    EXPECT_EQ(mirror->until("gone"), "lalt- gone");
    EXPECT_EQ(helper->until("0/0:off"), "lalt- 0/0:off") << "the kernel lets go of its keys";
    VirtualDevice second("Second");
    EXPECT_TRUE(helper->until("1/0:on").ends_with("1/0:on"));
    DesktopKeyboard secondMirror(DesktopKeyboard::mirrorOf("Second"));
    second.type("lctrl+ space+");
    helper->until("?49|leftControl");
    helper->answer(true);
    second.type("space- lctrl-");
    EXPECT_EQ(secondMirror.until("lctrl-"), "lctrl+ lctrl-");
}

TEST_F(KeysMachine, AgreesWithTheKeyboardAfterAnOverflow) {
    startFiltering();
    helper->kill(SIGSTOP);
    for (int time = 0; time < 1'500; ++time) keyboard.type("b+ b-");
    keyboard.type("lshift+");
    helper->kill(SIGCONT);
    helper->until("held:16");
    EXPECT_EQ(mirror->down(), "lshift");
    keyboard.type("lshift- a+ a-");
    EXPECT_TRUE(mirror->until("a-").ends_with("lshift- a+ a-"));
    EXPECT_EQ(mirror->down(), "");
}

TEST_F(KeysMachine, MirrorsAreNeverTakenAndHeldKeyboardsAreNamed) {
    startFiltering();
    HelperProcess second({"--mirror-settles-in-ms", "0"});
    second.send(to_helper::Hello{});
    EXPECT_EQ(second.until("1/0:off"), "welcome:1 held:0 1/0:off") << "the mirror is no keyboard to it";
    second.declare({controlSpace});
    const std::string said = second.until("held-elsewhere:Test");
    EXPECT_TRUE(said.ends_with("held-elsewhere:Test")) << said;
    keyboard.type("a+ a-");
    EXPECT_EQ(mirror->until("a-"), "a+ a-");
}

/// What logind would keep about the seat.
class Seat {
  public:
    Seat() { std::filesystem::create_directories(folder_); }
    ~Seat() { std::filesystem::remove_all(folder_); }
    Seat(const Seat&) = delete;
    Seat& operator=(const Seat&) = delete;

    void give(int user) const {
        std::ofstream(folder_ / ".next") << "IS_SEAT0=1\nACTIVE=c1\nACTIVE_UID=" << user << "\n";
        std::filesystem::rename(folder_ / ".next", folder_ / "seat0");
    }

  private:
    std::filesystem::path folder_ = "/run/systemd/seats";
};

TEST_F(KeysMachine, AnotherUserInFrontHearsNothingAndIsNotHeard) {
    const Seat seat;
    seat.give(0);
    startFiltering();
    keyboard.type("lalt+");
    helper->until("lalt+");
    seat.give(1000);
    EXPECT_EQ(mirror->until("gone"), "lalt+ lalt- gone");
    EXPECT_EQ(helper->until("closed"), "inactive closed");
    EXPECT_EQ(helper->waitForExit(), 0);
    HelperProcess refused;
    EXPECT_EQ(refused.until("closed"), "inactive closed");
}

TEST_F(KeysMachine, TheServiceServesOneAndTheNextAfterIt) {
    const Seat seat;
    seat.give(0);
    const std::string path = "/run/keys.sock";
    HelperService service(path);
    HelperPeer first(path);
    service.start();
    first.send(to_helper::Hello{});
    EXPECT_EQ(first.until("held:0"), "welcome:1 held:0");
    HelperPeer second(path);
    EXPECT_EQ(second.until("closed"), "busy closed");
    keyboard.type("lctrl+ lctrl-");
    EXPECT_TRUE(first.until("lctrl-").ends_with("lctrl+ lctrl-"));
    first.closeSocket();
    EXPECT_EQ(service.waitForExit(), 0);
    HelperPeer third(path);
    service.start();
    third.send(to_helper::Hello{});
    EXPECT_EQ(third.until("held:0"), "welcome:1 held:0");
    seat.give(1000);
    EXPECT_TRUE(third.until("closed").ends_with("inactive closed"));
}

} // namespace
} // namespace hopsel
