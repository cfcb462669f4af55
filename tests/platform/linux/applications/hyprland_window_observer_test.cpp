// The application in front of Hyprland, which is played.
#include "platform/linux/applications/hyprland_window_observer.h"

#include "platform/linux/desktops/played_hyprland.h"

namespace hopsel::test {
namespace {

TEST(HyprlandWindowObserver, TellsWhoseWindowHasTheFocus) {
    PlayedHyprland hyprland;
    QByteArray& window = hyprland.answers["j/activewindow"];
    window = "{}";
    HyprlandWindowObserver observer;
    std::vector<std::optional<std::string>> told;
    int windows = 0;
    observer.onChange = [&](const auto& identifier) { told.push_back(identifier); };
    observer.onWindowChange = [&] { ++windows; };
    const auto tells = [&](const std::optional<std::string>& identifier) {
        return runLoopUntil([&] {
            observer.start();
            return !told.empty() && told.back() == identifier;
        });
    };
    EXPECT_TRUE(tells(std::nullopt)) << "nothing is open";
    window = R"({"class":"org.kde.kate","title":"a, b","xwayland":false})";
    hyprland.tell("openwindow>>1,1,x,y\nactivewindow>>org.kde.kate,a, b\n");
    EXPECT_TRUE(tells("org.kde.kate"));
    const int before = windows;
    hyprland.tell("activewindow>>org.kde.kate,another\n");
    EXPECT_TRUE(runLoopUntil([&] { return windows > before; })) << "of the same application";
    window = R"({"class":"VirtualBox Machine","xwayland":true})";
    hyprland.tell("activewindow>>VirtualBox Machine,\n");
    EXPECT_TRUE(tells("VirtualBox Machine"));
    hyprland.hangUp();
    EXPECT_TRUE(runLoopUntil([&] { return told.back() == std::nullopt; }));
    window = R"({"class":["x"]})";
    EXPECT_TRUE(tells(std::nullopt));
    ASSERT_TRUE(hyprland.isHeard());
    window = R"({"class":"foot"})";
    hyprland.tell("activewindow>>foot,\n");
    EXPECT_TRUE(tells("foot"));
}

} // namespace
} // namespace hopsel::test
