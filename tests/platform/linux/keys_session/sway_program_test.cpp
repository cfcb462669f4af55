// The program itself in a session of sway, which shows nobody its keys: they come from a helper that is
// played, and sway's layouts are what they switch.
#include "platform/linux/desktops/sway_rig.h"
#include "platform/linux/keys_session/played_helper.h"
#include "session/hopsel_program.h"
#include "session/temporary_folder.h"

#include <filesystem>
#include <regex>

namespace hopsel::test {
namespace {

constexpr std::size_t leftShift = 4;
constexpr std::size_t rightSuper = 1;

class SwayProgram : public testing::Test {
  protected:
    SwayProgram() : keyboard(sway, "us,ru") {
        setenv("WAYLAND_DISPLAY", sway.display().c_str(), 1);
        setenv("XDG_SESSION_TYPE", "wayland", 1);
        setenv("XDG_CURRENT_DESKTOP", "sway", 1);
        setenv("HOPSEL_KEYS_SOCKET", helper.path().c_str(), 1);
        for (const char* variable : {"DISPLAY", "QT_QPA_PLATFORM"}) unsetenv(variable);
    }
    ~SwayProgram() override {
        for (const char* variable :
             {"WAYLAND_DISPLAY", "XDG_SESSION_TYPE", "XDG_CURRENT_DESKTOP", "HOPSEL_KEYS_SOCKET"})
            unsetenv(variable);
    }

    static std::string rules() {
        std::string text(session::twoRules);
        text = std::regex_replace(text, std::regex("xkb:us"), "sway:English (US)");
        return std::regex_replace(text, std::regex("xkb:ru"), "sway:Russian");
    }
    bool becomesCurrent(int layout, std::chrono::milliseconds timeout = std::chrono::seconds(10)) {
        const std::string wanted = "\"xkb_active_layout_index\": " + std::to_string(layout);
        return runLoopUntil([&] { return sway.message("get_inputs").find(wanted) != std::string::npos; },
                            timeout);
    }
    void tap(std::size_t key) const {
        helper.tell({to_session::Modifier{static_cast<std::uint8_t>(key), true, 0},
                     to_session::Modifier{static_cast<std::uint8_t>(key), false, 0}});
    }

    Sway sway;
    Keyboard keyboard;
    PlayedHelper helper;
};

TEST_F(SwayProgram, SwitchesByWhatTheHelperTellsAndAnswersIt) {
    session::HopselProgram program(HOPSEL_EXECUTABLE, rules());
    ASSERT_TRUE(helper.greet());
    ASSERT_EQ(helper.declared(), std::vector<std::string>{"49|leftShift"});
    ASSERT_TRUE(runLoopUntil([&] { // it may not have sway's layouts yet
        tap(rightSuper);
        return becomesCurrent(1, std::chrono::seconds(1));
    }));
    helper.tell({to_session::Modifier{rightSuper, true, 0},
                 to_session::Other{to_session::Other::Kind::pointer},
                 to_session::Modifier{rightSuper, false, 0}, to_session::Modifier{leftShift, true, 0},
                 to_session::Ask{1, ShortcutKey::fromStorageString("49|leftShift").value()}});
    EXPECT_EQ(helper.next(), to_helper::Message(to_helper::Answer{1, true}));
    EXPECT_TRUE(becomesCurrent(0)) << "once: a click is no tap";
    helper.tell({to_session::Released{49}, to_session::Modifier{leftShift, false, 0}});
    // A helper that dies is called again.
    helper.hangUp();
    ASSERT_TRUE(helper.greet());
    ASSERT_EQ(helper.declared(), std::vector<std::string>{"49|leftShift"});
    tap(rightSuper);
    EXPECT_TRUE(becomesCurrent(1));
}

TEST_F(SwayProgram, SaysWhatIsMissingAndGoesOnOnceItIsThere) {
    const session::TemporaryFolder folder;
    const auto later = folder.path() / "keys.sock";
    setenv("HOPSEL_KEYS_SOCKET", later.c_str(), 1);
    session::HopselProgram program(HOPSEL_EXECUTABLE, rules());
    EXPECT_TRUE(program.process().waitForLine("sudo systemctl enable --now hopsel-keys.socket",
                                              std::chrono::seconds(20)));
    const auto status = program.startAnother({"--status", "--json"});
    const std::string said = status->readAll(std::chrono::seconds(20));
    EXPECT_NE(said.find("not-listening"), std::string::npos) << said;
    // What needs no key works: the menu, and commands that sway's own bindings can call.
    ASSERT_TRUE(runLoopUntil([&] {
        program.startAnother({"--select", "sway:Russian"})->readAll(std::chrono::seconds(20));
        return becomesCurrent(1, std::chrono::seconds(1));
    }));
    program.startAnother({"--toggle"})->readAll(std::chrono::seconds(20));
    EXPECT_TRUE(becomesCurrent(0));
    // Once it is turned on the program takes it up by itself.
    std::filesystem::create_symlink(helper.path(), later);
    ASSERT_TRUE(helper.greet());
    ASSERT_EQ(helper.declared(), std::vector<std::string>{"49|leftShift"});
    ASSERT_TRUE(runLoopUntil([&] {
        tap(rightSuper);
        return becomesCurrent(1, std::chrono::seconds(1));
    }));
}

} // namespace
} // namespace hopsel::test
