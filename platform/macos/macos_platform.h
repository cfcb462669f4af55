// Everything of macOS that the program is built from: makes the live implementations and knows how they hang
// together.
//
// Made by the delegate first and destroyed last; the delegate hands its pieces on through their interfaces.
// The one place that knows the live types of this platform. Its shape is that of the other platforms; what
// cannot happen here does nothing.
#pragma once

#include "core/engine/engine_coordinator.h"
#include "core/platform/file_storage.h"
#include "core/platform/local_key_monitoring.h"
#include "core/platform/login_item.h"
#include "core/platform/preferences_storing.h"
#include "core/platform/report_delivering.h"
#include "core/platform/running_apps.h"
#include "core/platform/system_settings_opening.h"
#include "model/diagnostics_environment.h"
#include "platform/macos/applications/frontmost_app_observer.h"
#include "platform/macos/applications/reopen_observer.h"
#include "platform/macos/base/system_log.h"
#include "platform/macos/desktop/interface_style.h"
#include "platform/macos/desktop/workspace.h"
#include "platform/macos/keys/active_tap.h"
#include "platform/macos/keys/listen_tap.h"
#include "platform/macos/sources/mac_input_source_catalog.h"
#include "platform/macos/system_events/mac_system_event_observer.h"
#include "platform/macos/system_events/system_secure_input.h"
#include "ui/design/colors.h"
#include "ui/menubar/tray_hosting.h"

#include <functional>
#include <memory>
#include <string>

namespace hopsel {

class MacosPlatform {
  public:
    MacosPlatform();

    /// Clock, calendar and facts; read once at start.
    static DiagnosticsEnvironment environment();
    /// In the user's application support.
    static std::shared_ptr<FileStorage> storage();

    /// The clock and the limit of a tap are the caller's to add.
    EngineCoordinator::Parts engineParts();
    std::shared_ptr<SecureInputProviding> secureInput() const { return secureInput_; }
    std::shared_ptr<InputSourceCatalog> inputSources() const { return sources_; }
    std::shared_ptr<LoginItemControlling> loginItem() const;
    std::shared_ptr<SystemSettingsOpening> settingsOpener();
    std::shared_ptr<PreferencesStoring> preferences();
    std::shared_ptr<RunningAppsProviding> runningApps() const;
    std::shared_ptr<ReportDelivering> reportDelivery();
    std::function<bool(const ShortcutKey&)> systemShortcutConflict() const;
    std::shared_ptr<LocalKeyMonitoring> localKeys() const;
    std::unique_ptr<TrayHosting> trayHost() const;
    SystemEventObserving& systemObserver() { return systemObserver_; }
    FrontmostAppObserving& frontmostObserver() { return frontmostObserver_; }

    /// Tells light or dark at once, and every change.
    void followAppearance(std::function<void(design::Appearance)> onChange);
    /// Called when the user starts the program again, which is to bring its window to the front.
    void setOnReopen(std::function<void()> callback);
    /// Gets the program the right to show a window in front.
    static void comeToFront();

    /// The system tells the state of the modifiers with every event: nothing has to be read again.
    void recoverFrom(SystemEvent /*event*/) {}

    enum class Connection { kept, regained, lost };
    /// Called every two seconds: looks after the taps, which the system may take away without a word.
    Connection retry();
    void setOnLost(const std::function<void()>& /*callback*/) {}
    /// Empty: the windows and the menu name the permission that is missing, and no terminal is attached.
    const std::string& listeningFailure() const { return listeningFailure_; }

  private:
    SystemLog log_;
    std::shared_ptr<Workspace> workspace_;
    std::shared_ptr<MacInputSourceCatalog> sources_;
    std::shared_ptr<SystemSecureInput> secureInput_ = std::make_shared<SystemSecureInput>();
    std::shared_ptr<ListenTap> listenTap_ = std::make_shared<ListenTap>();
    std::shared_ptr<ActiveTap> activeTap_ = std::make_shared<ActiveTap>(log_);
    MacSystemEventObserver systemObserver_;
    FrontmostAppObserver frontmostObserver_;
    std::unique_ptr<InterfaceStyle> interfaceStyle_;
    std::unique_ptr<ReopenObserver> reopenObserver_;
    std::string listeningFailure_;
};

} // namespace hopsel
