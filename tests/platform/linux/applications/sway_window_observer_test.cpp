// The application in front of a real sway, with real windows, and with none.
#include "platform/linux/applications/sway_window_observer.h"

#include "platform/linux/desktops/sway_rig.h"
#include "session/text_field.h"

#include <optional>

namespace hopsel::test {
namespace {

/// Programs that are started find it.
void showIn(const Sway& sway) {
    setenv("XDG_RUNTIME_DIR", sway.folder.path().c_str(), 1);
    setenv("WAYLAND_DISPLAY", sway.display().c_str(), 1);
}

TEST(SwayWindowObserver, TellsWhoseWindowHasTheFocusAndFindsSwayAgain) {
    auto sway = std::make_unique<Sway>();
    auto keyboard = std::make_unique<Keyboard>(*sway, "us");
    showIn(*sway);
    std::vector<std::optional<std::string>> told;
    int windows = 0;
    SwayWindowObserver observer;
    observer.onChange = [&](const auto& identifier) { told.push_back(identifier); };
    observer.onWindowChange = [&] { ++windows; };
    const auto tells = [&](const std::optional<std::string>& identifier) {
        return runLoopUntil([&] {
            observer.start();
            return !told.empty() && told.back() == identifier;
        });
    };
    EXPECT_TRUE(tells(std::nullopt)) << "nothing is open";
    {
        const session::TextField field("wayland");
        EXPECT_TRUE(tells("text_field.py")) << told.back().value_or("nothing");
        const int before = windows;
        const session::TextField second("wayland");
        EXPECT_TRUE(runLoopUntil([&] { return windows > before; })) << "of the same application";
        sway->message("command", "workspace 2");
        EXPECT_TRUE(tells(std::nullopt)) << "an empty workspace";
        sway->message("command", "workspace 1");
        EXPECT_TRUE(tells("text_field.py"));
    }
    EXPECT_TRUE(tells(std::nullopt));
    keyboard.reset();
    sway = std::make_unique<Sway>();
    keyboard = std::make_unique<Keyboard>(*sway, "us");
    showIn(*sway);
    const session::TextField field("wayland");
    EXPECT_TRUE(tells("text_field.py"));
    for (const char* variable : {"WAYLAND_DISPLAY", "XDG_RUNTIME_DIR"}) unsetenv(variable);
}

} // namespace
} // namespace hopsel::test
