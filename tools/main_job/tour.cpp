#include "main_job/tour.h"

#include "session/x_screenshot.h"

#include <stdexcept>

namespace hopsel::main_job {

using namespace std::chrono_literals;
using namespace session;

std::vector<std::filesystem::path> takePictures(Stage& stage, const std::filesystem::path& folder) {
    std::filesystem::create_directories(folder);
    std::vector<std::filesystem::path> pictures;
    XScreenshots screen;
    const auto take = [&](const char* name) {
        pictures.push_back(folder / (std::string(name) + ".png"));
        screen.save(pictures.back());
    };
    XKeyboard& keyboard = stage.keyboard();
    take("panel");
    stage.bringProgramForward();
    // The sidebar has the focus: down from pane to pane.
    for (const char* pane : {"general", "sources", "rules", "diagnostics", "about"}) {
        take((std::string("settings-") + pane).c_str());
        keyboard.tap(KEY_DOWN);
    }
    keyboard.movePointer(1012, 12); // the panel's one icon
    keyboard.button(1);
    take("panel-and-menu");
    keyboard.tap(key::escape);
    return pictures;
}

} // namespace hopsel::main_job
