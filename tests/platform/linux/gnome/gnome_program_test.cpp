// The program itself in a GNOME session under Wayland, where there is no X server.
#include "gnome_rig.h"
#include "session/hopsel_program.h"
#include "session/text_field.h"

#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>

namespace hopsel::test {
namespace {

const int keyA = 30, leftShift = 42, space = 57, rightSuper = 126;

class GnomeProgram : public testing::Test {
  protected:
    GnomeProgram() {
        // The program has a folder of its own in this one's place.
        const std::string display = std::getenv("XDG_RUNTIME_DIR") + std::string("/wayland-0");
        setenv("WAYLAND_DISPLAY", display.c_str(), 1);
        setenv("XDG_SESSION_TYPE", "wayland", 1);
        setenv("XDG_CURRENT_DESKTOP", "GNOME", 1);
        for (const char* variable : {"DISPLAY", "QT_QPA_PLATFORM"}) unsetenv(variable);
    }
    ~GnomeProgram() override {
        for (const char* variable : {"XDG_SESSION_TYPE", "XDG_CURRENT_DESKTOP"}) unsetenv(variable);
    }

    bool isCurrent(const std::string& layout) {
        return gnome.evaluate("imports.ui.status.keyboard.getInputSourceManager().currentSource.id") ==
               "\"" + layout + "\"";
    }
    /// Taps until a switch says that the program is there.
    bool tapsUntil(const std::string& layout) {
        return runLoopUntil(
            [&] {
                gnome.type({rightSuper});
                return runLoopUntil([&] { return isCurrent(layout); }, std::chrono::seconds(1));
            },
            std::chrono::seconds(30));
    }
    bool switches(const std::vector<int>& keys, const std::string& layout) {
        for (const int key : keys) gnome.key(key, true);
        for (const int key : keys) gnome.key(key, false);
        return runLoopUntil([&] { return isCurrent(layout); });
    }
    int windows() { return std::stoi(gnome.evaluate("global.get_window_actors().length")); }

    GnomeRig gnome;
};

TEST_F(GnomeProgram, SwitchesShowsItsWindowAndLeavesTheKeyboardWhenItIsKilled) {
    auto program = std::make_unique<session::HopselProgram>(HOPSEL_EXECUTABLE, session::twoRules);
    ASSERT_TRUE(tapsUntil("ru"));
    {
        session::TextField field("wayland");
        gnome.type({keyA});
        EXPECT_TRUE(field.waitForText("ф")) << field.text();
        EXPECT_TRUE(switches({leftShift, space}, "us"));
        gnome.type({keyA});
        EXPECT_TRUE(field.waitForText("фa")) << field.text();
        EXPECT_TRUE(switches({rightSuper}, "ru"));
        EXPECT_TRUE(switches({rightSuper}, "us"));

        // Killed while it holds a combination back.
        gnome.key(leftShift, true);
        gnome.key(space, true);
        EXPECT_TRUE(runLoopUntil([&] { return isCurrent("ru"); }));
        program->process().kill(SIGKILL);
        gnome.key(space, false);
        gnome.key(leftShift, false);
        Caller next(gnome.session.busAddress());
        EXPECT_TRUE(runLoopUntil([&] { return next.error("Register").empty(); })) << "it is told of the end";
        gnome.type({rightSuper, space});
        EXPECT_TRUE(switches({leftShift, space}, "ru"));
        EXPECT_TRUE(field.waitForText("фa  ")) << field.text();
    }
    const int before = windows();
    program = std::make_unique<session::HopselProgram>(HOPSEL_EXECUTABLE, session::twoRules);
    ASSERT_TRUE(tapsUntil("us"));
    const auto again = program->startAnother();
    EXPECT_TRUE(runLoopUntil([&] { return windows() > before; })) << "its window";
}

} // namespace
} // namespace hopsel::test
