// The Settings window over fakes, and keys that a test presses in it.
#pragma once

#include "ui/settings/settings_window_controller.h"
#include "ui/window_rig.h"

namespace hopsel::test {

class FakeKeys final : public LocalKeyMonitoring {
  public:
    void start(std::function<void(const LocalKeyDown&)> callback) override {
        onKeyDown = std::move(callback);
    }
    void stop() override { onKeyDown = nullptr; }

    void press(std::uint16_t keyCode, ModifierSet held = {}, bool isRepeat = false) const {
        const auto callback = onKeyDown; // which may stop us
        callback({keyCode, flagsOf(held), isRepeat});
    }

    std::function<void(const LocalKeyDown&)> onKeyDown;
};

class SettingsRig : public WindowRig {
  public:
    /// Launches if need be, shows the pane, and waits until it is there.
    void open(SettingsPane pane) {
        if (!model) launch();
        if (!controller) controller = std::make_unique<SettingsWindowController>(*model, keys);
        controller->show(pane);
        settle();
    }
    QWidget* window() const override { return controller->window(); }
    bool isCapturing() const { return engine->isCapturing() || keys->onKeyDown; }

    std::shared_ptr<FakeKeys> keys = std::make_shared<FakeKeys>();
    std::unique_ptr<SettingsWindowController> controller;
};

} // namespace hopsel::test
