// Builds the program in a fixed order, wires the platform's observers to the model, and takes it down again.
//
// Made by `main`, lives as long as the process, owns everything. What it builds is handed on through
// interfaces; callbacks hold the model weakly.
#pragma once

#include "app/command_desk.h"
#include "app/retry_timer.h"
#include "core/engine/engine_coordinator.h"
#include "model/app_model.h"
#include "model/settings_file_watch.h"
#include "platform/interface/platform.h"
#include "platform/interface/single_instance.h"
#include "ui/menubar/status_item_controller.h"
#include "ui/menubar/switch_indicator.h"
#include "ui/onboarding/onboarding_window_controller.h"
#include "ui/settings/settings_window_controller.h"

#include <QObject>
#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace hopsel {

class AppDelegate {
  public:
    enum class Launch {
        running,
        alreadyRunning, ///< another copy is; said so on standard error
        impossible,     ///< nothing can work in this session; said why on standard error
    };

    enum class Start {
        byHand,       ///< by someone who wants to see something
        inBackground, ///< at login: no window is shown
    };

    /// Throws `std::runtime_error`, in words for the user, if nothing can work in this session.
    using PlatformFactory = std::function<std::unique_ptr<Platform>()>;

    static constexpr std::chrono::milliseconds retryInterval{2000};
    AppDelegate(std::unique_ptr<SingleInstance> singleInstance, PlatformFactory makePlatform,
                Start start = Start::byHand, std::chrono::milliseconds retryEvery = retryInterval);

    Launch didFinishLaunching();
    void willTerminate();
    /// Something is broken, or does not tell of its changes, and is looked after again and again.
    bool isRetrying() const { return retryTimer_.isRunning(); }

    /// The file named by HOPSEL_CONFIG when that is set and not empty, else the default place.
    static std::filesystem::path configURL(const FileStorage& storage);

  private:
    void buildModel();
    void observePlatform();
    void buildWindows();
    void showFirstWindow();
    void showSettings(std::optional<SettingsPane> pane = std::nullopt);
    void showOnboarding();
    void reopen();
    void openCommandDesk();
    void takePanel(bool hasPanel);
    void sayThatItRunsOn();
    bool needsRetry() const;
    void retry();
    void sayStoreProblem();
    void sayWhyNotListening();

    std::unique_ptr<SingleInstance> singleInstance_;
    PlatformFactory makePlatform_;
    Start start_;
    bool isPanelKnown_ = false;
    std::unique_ptr<Platform> platform_;
    std::shared_ptr<EngineCoordinator> engine_;
    std::shared_ptr<RuleStore> store_;
    std::shared_ptr<SystemSettingsOpening> settingsOpener_;
    std::shared_ptr<LiveInputSourceDirectory> directory_;
    std::unique_ptr<AppModel> model_;
    std::unique_ptr<SettingsFileWatch> settingsFile_;
    std::unique_ptr<CommandDesk> commands_;
    std::unique_ptr<SettingsWindowController> settingsController_;
    std::unique_ptr<OnboardingWindowController> onboardingController_;
    std::unique_ptr<StatusItemController> statusController_;
    std::unique_ptr<SwitchIndicator> indicator_;
    std::unique_ptr<QWidget> runsOnMessage_;
    QObject context_; ///< what is put off ends with it
    RetryTimer retryTimer_;
    std::string saidLast_; ///< about listening; each reason is said once
};

} // namespace hopsel
