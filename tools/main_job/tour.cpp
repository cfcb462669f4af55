#include "main_job/tour.h"

#include "session/x_screenshot.h"

#include <cstdint>
#include <string>

namespace hopsel::main_job {

using namespace std::chrono_literals;
using namespace session;

namespace {

constexpr QRect icon(1002, 2, 18, 20); // the panel's only one
constexpr auto atMost = 30s;           // on a machine that is busy with other things

} // namespace

std::vector<std::filesystem::path> takePictures(Stage& stage, const std::filesystem::path& folder) {
    std::filesystem::create_directories(folder);
    std::vector<std::filesystem::path> pictures;
    XScreenshots screen;
    const auto take = [&](const char* name) {
        pictures.push_back(folder / (std::string(name) + ".png"));
        screen.saveNext(pictures.back(), icon, [&] { stage.waitForItsTurn(); }, atMost);
    };
    XKeyboard& keyboard = stage.keyboard();
    take("panel");
    stage.bringProgramForward();
    // The sidebar has the focus: down from pane to pane.
    take("settings-general");
    for (const char* pane :
         {"settings-sources", "settings-rules", "settings-diagnostics", "settings-about"}) {
        keyboard.tap(KEY_DOWN);
        take(pane);
    }
    const QPoint middle = icon.center();
    keyboard.movePointer(static_cast<std::int16_t>(middle.x()), static_cast<std::int16_t>(middle.y()));
    keyboard.button(1);
    take("panel-and-menu");
    keyboard.tap(key::escape);
    return pictures;
}

} // namespace hopsel::main_job
