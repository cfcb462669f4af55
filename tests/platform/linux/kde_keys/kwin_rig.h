// KDE's compositor itself, without a screen, with two layouts and a keyboard that the test types on.
//
// A test owns one, after its bus. WAYLAND_DISPLAY names it, and the session is KDE's, until it is gone.
#pragma once

#include "session/child_process.h"
#include "session/temporary_folder.h"
#include "support/qt_waiting.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <sys/stat.h>

namespace hopsel::test {

class Kwin {
  public:
    Kwin() {
        namespace fs = std::filesystem;
        folder_.write("kxkbrc", "[Layout]\nLayoutList=us,ru\nUse=true\n");
        fs::permissions(folder_.path(), fs::perms::owner_all);
        // The installed file asks for a capability, which containers do not give.
        const fs::path program = folder_.path() / "kwin_wayland";
        EXPECT_TRUE(fs::exists("/usr/bin/kwin_wayland")) << "please install kwin-wayland";
        fs::copy_file("/usr/bin/kwin_wayland", program);
        session::ChildProcess::Options options{
            program.string(), {"--virtual", "--socket", "kwin", "--no-lockscreen"}, {}, "kwin-wayland"};
        const std::string home = folder_.path().string();
        options.environment = {{"HOME", home},
                               {"XDG_CONFIG_HOME", home},
                               {"XDG_RUNTIME_DIR", home},
                               {"KWIN_COMPOSE", "Q"},
                               {"KWIN_WAYLAND_NO_PERMISSION_CHECKS", "1"},
                               {"DISPLAY", std::nullopt},
                               {"WAYLAND_DISPLAY", std::nullopt},
                               {"QT_QPA_PLATFORM", std::nullopt},
                               {"LC_ALL", "C.UTF-8"}};
        options.errors = session::ChildProcess::Output::discard;
        process_ = std::make_unique<session::ChildProcess>(options);
        const fs::path socket = folder_.path() / "kwin";
        EXPECT_TRUE(runLoopUntil([&] { return fs::exists(socket); })) << "is kwin-wayland installed?";
        EXPECT_EQ(mkfifo(pipe().c_str(), 0600), 0);
        keyboard_ = std::make_unique<session::ChildProcess>(
            session::ChildProcess::Options{"/usr/bin/python3",
                                           {FAKE_KEYBOARD, socket.string(), pipe().string()},
                                           {},
                                           "python3",
                                           session::ChildProcess::Output::capture});
        EXPECT_TRUE(keyboard_->waitForLine("plugged", std::chrono::seconds(20)));
        setenv("WAYLAND_DISPLAY", socket.c_str(), 1);
        setenv("XDG_RUNTIME_DIR", home.c_str(), 1);
        setenv("XDG_SESSION_TYPE", "wayland", 1);
        setenv("XDG_CURRENT_DESKTOP", "KDE", 1);
    }
    ~Kwin() {
        for (const char* variable :
             {"WAYLAND_DISPLAY", "XDG_RUNTIME_DIR", "XDG_SESSION_TYPE", "XDG_CURRENT_DESKTOP"})
            unsetenv(variable);
    }
    Kwin(const Kwin&) = delete;
    Kwin& operator=(const Kwin&) = delete;

    /// "+42" is pressed, "-42" released.
    void type(const std::string& keys) const { std::ofstream(pipe()) << keys << '\n'; }

  private:
    std::filesystem::path pipe() const { return folder_.path() / "typed"; }

    session::TemporaryFolder folder_;
    std::unique_ptr<session::ChildProcess> process_;
    std::unique_ptr<session::ChildProcess> keyboard_;
};

} // namespace hopsel::test
