// Sway itself, without a screen, and keyboards that are plugged into it.
//
// A test owns one, and then keyboards; they end with it. SWAYSOCK names it from then on.
#pragma once

#include "session/child_process.h"
#include "session/temporary_folder.h"
#include "support/qt_waiting.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <unistd.h>

namespace hopsel::test {

using session::ChildProcess;

/// Sway does not run as root; as root it is started as somebody else.
struct Sway {
    Sway() {
        const std::filesystem::path config = folder.write("config", "xwayland disable\n");
        ChildProcess::Options options{"sway", {"--config", config.string()}, {}, "sway"};
        if (geteuid() == 0) {
            constexpr uid_t nobody = 65534;
            EXPECT_EQ(chown(folder.path().c_str(), nobody, nobody), 0);
            options = {"setpriv", {"--reuid=65534", "--regid=65534", "--clear-groups"}, {}, "sway"};
            options.arguments.insert(options.arguments.end(), {"sway", "--config", config.string()});
        }
        options.environment = {{"XDG_RUNTIME_DIR", folder.path().string()},
                               {"SWAYSOCK", socket()},
                               {"WLR_BACKENDS", "headless"},
                               {"WLR_RENDERER", "pixman"},
                               {"WLR_LIBINPUT_NO_DEVICES", "1"}};
        options.errors = ChildProcess::Output::discard;
        process = std::make_unique<ChildProcess>(options);
        // Its last step before it runs is to make the other socket.
        EXPECT_TRUE(runLoopUntil([&] {
            return std::filesystem::exists(socket()) && std::filesystem::exists(display());
        })) << "is sway installed?";
        setenv("SWAYSOCK", socket().c_str(), 1);
    }
    std::string socket() const { return (folder.path() / "ipc").string(); }
    std::filesystem::path display() const { return folder.path() / "wayland-1"; }
    std::string message(const std::string& type, const std::string& payload = "") const {
        return session::runProgram({"swaymsg",
                                    {"-s", socket(), "-r", "-t", type, payload},
                                    {},
                                    "sway",
                                    ChildProcess::Output::capture});
    }

    session::TemporaryFolder folder;
    std::unique_ptr<ChildProcess> process;
};

struct Keyboard {
    Keyboard(const Sway& sway, const std::string& layouts)
        : process({"/usr/bin/python3",
                   {VIRTUAL_KEYBOARD, sway.display().string(), layouts},
                   {},
                   "libxkbcommon-tools",
                   ChildProcess::Output::capture}) {
        EXPECT_TRUE(process.waitForLine("plugged", std::chrono::seconds(10)));
    }
    ChildProcess process;
};

} // namespace hopsel::test
