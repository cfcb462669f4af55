// The program itself in a GNOME session under Wayland, where there is no X server.
#include "gnome_rig.h"
#include "session/child_process.h"
#include "session/hopsel_program.h"
#include "session/temporary_folder.h"
#include "session/text_field.h"

#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>

namespace hopsel::test {
namespace {

const int keyEnter = 28, keyA = 30, leftShift = 42, space = 57, rightSuper = 126;

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

    std::string current() {
        return gnome.evaluate("imports.ui.status.keyboard.getInputSourceManager().currentSource.id");
    }
    bool isCurrent(const std::string& layout) { return current() == "\"" + layout + "\""; }
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
        return eventually([&] { return isCurrent(layout); });
    }
    bool hasWindow() {
        return gnome.evaluate("global.get_window_actors().some(w => w.meta_window.title === 'Hopsel')") ==
               "true";
    }

    std::string askIndicator(const QString& what) {
        return gnome.evaluate(
            QStringLiteral("(indicator => %1)(Main.panel.statusArea['app.hopsel.Hopsel'])").arg(what));
    }

    GnomeRig gnome;
};

// From the keyboard alone: each page's button has the focus, or Return presses it.
TEST_F(GnomeProgram, TheIntroductionTurnsTheExtensionOnAndEndsInASwitch) {
    gnome.enableExtension(false);
    const session::TemporaryFolder folder;
    session::ChildProcess::Options first; // in the session's own home, which has GNOME's settings
    first.program = HOPSEL_EXECUTABLE;
    first.package = "hopsel itself: build it first";
    first.environment = {{"HOPSEL_CONFIG", (folder.path() / "config.json").string()}};
    const session::ChildProcess program(first);
    const auto isOn = [&] {
        return gnome.evaluate("Main.extensionManager.lookup('hopsel-43@app.hopsel.Hopsel').state") == "1";
    };
    const auto patience = std::chrono::seconds(60);
    ASSERT_TRUE(runLoopUntil(
        [&] {
            gnome.type({keyEnter});
            return runLoopUntil(isOn, std::chrono::seconds(1));
        },
        patience));
    const std::string before = current();
    EXPECT_TRUE(runLoopUntil(
        [&] {
            gnome.type({rightSuper});
            return runLoopUntil([&] { return current() != before; }, std::chrono::seconds(1));
        },
        patience));
}

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
        EXPECT_TRUE(eventually([&] { return isCurrent("ru"); }));
        program->process().kill(SIGKILL);
        gnome.key(space, false);
        gnome.key(leftShift, false);
        Caller next(gnome.session.busAddress());
        EXPECT_TRUE(eventually([&] { return next.error("Register").empty(); })) << "it is told of the end";
        gnome.type({rightSuper, space});
        EXPECT_TRUE(switches({leftShift, space}, "ru"));
        EXPECT_TRUE(field.waitForText("фa  ")) << field.text();
    }
    program = std::make_unique<session::HopselProgram>(HOPSEL_EXECUTABLE, session::twoRules);
    ASSERT_TRUE(tapsUntil("us"));
    const auto again = program->startAnother();
    EXPECT_TRUE(eventually([&] { return hasWindow(); }));
}

TEST_F(GnomeProgram, IsInTheTopBarWithItsMenuUntilItEnds) {
    auto program = std::make_unique<session::HopselProgram>(HOPSEL_EXECUTABLE, session::twoRules);
    ASSERT_TRUE(eventually([&] { return askIndicator("Boolean(indicator)") == "true"; }));
    const QString badge = "indicator.get_first_child().get_last_child()";
    const auto currentLabel = [&] { return askIndicator(badge + ".labels[" + badge + ".current]"); };
    ASSERT_TRUE(tapsUntil("ru"));
    EXPECT_TRUE(eventually([&] { return currentLabel() == "\"R\""; })) << currentLabel();
    EXPECT_TRUE(switches({rightSuper}, "us"));
    EXPECT_TRUE(eventually([&] { return currentLabel() == "\"A\""; })) << currentLabel();

    const session::TextField inFront("wayland");
    gnome.chooseInMenu("Main.panel.statusArea['app.hopsel.Hopsel']", "Settings…");
    EXPECT_TRUE(eventually([&] {
        return gnome.evaluate("global.display.focus_window?.title === 'Hopsel'") == "true";
    })) << "its window is in front of all others";
    gnome.keepPicture("settings");
    program->process().kill(SIGKILL);
    EXPECT_TRUE(eventually([&] { return askIndicator("Boolean(indicator)") == "false"; }));
}

} // namespace
} // namespace hopsel::test
