// A desktop session for a whole test program, and in it the program's status item over a model with fakes.
#pragma once

#include "session/child_process.h"
#include "support/fakes/model_rig.h"
#include "support/qt_waiting.h"
#include "ui/menubar/linux/tray_host.h"
#include "ui/menubar/status_item_controller.h"

#include <gmock/gmock.h>
#include <memory>
#include <vector>

namespace hopsel::test {

class PanelRig : public testing::Test {
  protected:
    static constexpr TrayHost::Patience little{std::chrono::milliseconds(20), std::chrono::milliseconds(20)};
    static constexpr TrayHost::Patience much{std::chrono::milliseconds(500), std::chrono::seconds(60)};

    void makeController(TrayHost::Patience patience);
    /// Runs the loop until the controller has said so.
    bool waitForHost(bool hasHost);
    /// A panel of the kind that takes windows in.
    static std::unique_ptr<session::ChildProcess> startTrayer();

    fakes::ModelRig rig;
    AppModel& model = rig.launch();
    std::vector<bool> hosts;
    std::unique_ptr<StatusItemController> controller;
};

} // namespace hopsel::test
