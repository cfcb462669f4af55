// Builds the program in a fixed order, wires the platform's observers to the model, and takes it down again.
//
// Made by `main`, lives as long as the process, owns everything. What it builds is handed on through
// interfaces; callbacks hold the model weakly.
#pragma once

#include "app/linux/linux_platform.h"
#include "app/model/app_model.h"
#include "app/single_instance.h"
#include "core/engine/engine_coordinator.h"

#include <QTimer>
#include <filesystem>
#include <memory>
#include <string>

namespace hopsel {

class AppDelegate {
  public:
    enum class Launch {
        running,
        alreadyRunning, ///< another copy is; said so on standard error
        impossible,     ///< nothing can work in this session; said why on standard error
    };

    Launch didFinishLaunching();
    void willTerminate();

    /// The file named by HOPSEL_CONFIG when that is set and not empty, else the default place.
    static std::filesystem::path configURL(const FileStorage& storage);

  private:
    void buildModel();
    void observePlatform();
    void startRetrying();
    void retry();
    void sayStoreProblem();
    void sayWhyNotListening();

    SingleInstance singleInstance_;
    std::unique_ptr<LinuxPlatform> platform_;
    std::shared_ptr<EngineCoordinator> engine_;
    std::shared_ptr<RuleStore> store_;
    std::shared_ptr<SystemSettingsOpening> settingsOpener_;
    std::shared_ptr<LiveInputSourceDirectory> directory_;
    std::unique_ptr<AppModel> model_;
    QTimer retryTimer_;
    std::string saidLast_; ///< about listening; each reason is said once
};

} // namespace hopsel
