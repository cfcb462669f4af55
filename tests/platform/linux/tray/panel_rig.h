// The program's status item over a model with fakes, for a real panel.
#pragma once

#include "platform/linux/bus/bus_address.h"
#include "platform/linux/tray/tray_host.h"
#include "session/child_process.h"
#include "support/fakes/model_rig.h"
#include "support/qt_waiting.h"
#include "ui/menubar/status_item_controller.h"

#include <gmock/gmock.h>
#include <memory>
#include <vector>

namespace hopsel::test {

class PanelRig : public testing::Test {
  protected:
    static constexpr TrayHost::Patience little{std::chrono::milliseconds(20), std::chrono::milliseconds(20)};
    static constexpr TrayHost::Patience much{std::chrono::milliseconds(500), std::chrono::seconds(60)};

    void makeController(TrayHost::Patience patience) {
        controller = std::make_unique<StatusItemController>(
            model, std::make_unique<TrayHost>(std::make_shared<BusLink>(bus_address::session), nullptr, true,
                                              patience));
        controller->onHostChanged = [this](bool hasHost) { hosts.push_back(hasHost); };
    }
    /// Runs the loop until the controller has said so.
    bool waitForHost(bool hasHost) {
        return runLoopUntil([&] { return !hosts.empty() && hosts.back() == hasHost; });
    }
    /// A panel of the kind that takes windows in.
    static std::unique_ptr<session::ChildProcess> startTrayer() {
        session::ChildProcess::Options options;
        options.program = "trayer";
        options.package = "trayer";
        options.arguments = {"--edge", "top", "--align", "right", "--widthtype", "request", "--height", "24"};
        options.errors = session::ChildProcess::Output::discard;
        return std::make_unique<session::ChildProcess>(options);
    }

    fakes::ModelRig rig;
    AppModel& model = rig.launch();
    std::vector<bool> hosts;
    std::unique_ptr<StatusItemController> controller;
};

} // namespace hopsel::test
