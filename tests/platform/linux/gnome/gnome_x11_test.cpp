// The program itself in a GNOME session on a real X server: keys come from the server, switches are the
// shell's.
#include "gnome_rig.h"
#include "session/hopsel_program.h"
#include "session/text_field.h"
#include "session/x_keyboard.h"
#include "session/x_server.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace hopsel::test {
namespace {

namespace key = session::key;

constexpr std::string_view toHangulAndBack = R"json({
  "rules": [{
    "action": {
      "sourceA": {"displayName": "Korean", "sourceId": "ibus:hangul"},
      "sourceB": {"displayName": "English (US)", "sourceId": "xkb:us"},
      "type": "toggle_input_source"
    },
    "enabled": true,
    "id": "5C1E0B1A-4F53-4B8E-9C55-0D0F5C7E2A11",
    "trigger": {"key": "rightCommand", "type": "modifier_tap"}
  }],
  "schemaVersion": 2
})json";

class GnomeX11 : public testing::Test {
  protected:
    GnomeX11() {
        setenv("XDG_SESSION_TYPE", "x11", 1);
        setenv("XDG_CURRENT_DESKTOP", "GNOME", 1);
        unsetenv("QT_QPA_PLATFORM");
    }
    ~GnomeX11() override {
        for (const char* variable : {"XDG_SESSION_TYPE", "XDG_CURRENT_DESKTOP"}) unsetenv(variable);
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
    }

    std::string current() {
        return gnome.evaluate("imports.ui.status.keyboard.getInputSourceManager().currentSource.id");
    }
    bool isCurrent(const std::string& id) {
        return eventually([&] { return current() == "\"" + id + "\""; });
    }
    /// Taps until a switch says that the program is there.
    bool tapsUntil(const std::string& id) {
        return runLoopUntil(
            [&] {
                keyboard.tap(key::rightSuper);
                return runLoopUntil([&] { return current() == "\"" + id + "\""; }, std::chrono::seconds(1));
            },
            std::chrono::seconds(60));
    }
    /// What the program says of itself, from a terminal.
    static std::string status(const session::HopselProgram& program) {
        const auto terminal = program.startAnother({"--status"});
        const auto line = terminal->waitForLine("", std::chrono::seconds(20));
        return line.value_or("");
    }

    session::XServer server{{"-screen", "0", "1280x720x24"}};
    GnomeRig gnome{GnomeRig::Kind::x11};
    session::XKeyboard keyboard;
};

TEST_F(GnomeX11, SwitchesLayoutsAndEnginesAndTheFirstLetterIsRight) {
    session::HopselProgram program(HOPSEL_EXECUTABLE, toHangulAndBack);
    ASSERT_TRUE(tapsUntil("hangul"));
    session::TextField field("ibus");
    EXPECT_TRUE(isCurrent("hangul"));
    for (const std::uint16_t code : std::initializer_list<std::uint16_t>{KEY_G, KEY_K, KEY_S})
        keyboard.tap(code);
    EXPECT_TRUE(field.waitForComposed("한")) << field.text() << field.composed();
    keyboard.tap(key::rightSuper);
    EXPECT_TRUE(isCurrent("us"));
    keyboard.tap(key::a);
    EXPECT_TRUE(field.waitForText("한a")) << field.text();
    gnome.keepPicture("x11");
}

TEST_F(GnomeX11, WithoutTheExtensionItSaysSo) {
    gnome.enableExtension(false);
    session::HopselProgram program(HOPSEL_EXECUTABLE, session::twoRules);
    const auto says = [&](const std::string& line) {
        return eventually([&] { return status(program) == line; });
    };
    const std::string isMissing = "⚠ The GNOME extension is not on";
    EXPECT_TRUE(says(isMissing)) << status(program);
    gnome.enableExtension(true);
    ASSERT_TRUE(tapsUntil("ru"));
    EXPECT_TRUE(says("✓ Working")) << status(program);
    gnome.enableExtension(false);
    EXPECT_TRUE(says(isMissing)) << status(program);
}

} // namespace
} // namespace hopsel::test
