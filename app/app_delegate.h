// Builds the program in a fixed order, wires the platform's observers to the engine, and takes it down again.
//
// Made by `main`, lives as long as the process, owns everything. The only place that knows the live types;
// all of it is handed on through interfaces.
#pragma once

#include "app/single_instance.h"
#include "core/engine/engine_coordinator.h"
#include "core/platform/linux/system_log.h"
#include "core/platform/linux/x11/x11_key_hook.h"
#include "core/platform/linux/x11/x11_listen_source.h"
#include "core/platform/linux/xkb/xkb_input_sources.h"
#include "core/rules/rule_store.h"

#include <QTimer>
#include <filesystem>
#include <memory>

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
    /// Throws `std::runtime_error` in words for the user.
    void buildEngine();
    void loadRules();
    void observePlatform();
    void startRetrying();
    void retryPermissionIfNeeded();
    bool reconnectSources();
    void sayWhyNotListening();

    SystemLog log_;
    SingleInstance singleInstance_;
    std::shared_ptr<XkbInputSources> sources_;
    std::shared_ptr<X11KeyHook> hook_;
    std::shared_ptr<X11ListenSource> listenSource_;
    std::string saidLast_; ///< about listening; each reason is said once
    std::shared_ptr<EngineCoordinator> engine_;
    std::shared_ptr<FileStorage> storage_;
    std::unique_ptr<RuleStore> store_;
    QTimer retryTimer_;
};

} // namespace hopsel
