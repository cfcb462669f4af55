// Everything of Linux that the program is built from: makes the live implementations and knows how they hang
// together.
//
// Made by the delegate first and destroyed last; the delegate hands its pieces on through their interfaces.
// The one place that knows the live types of this platform.
#pragma once

#include "core/engine/engine_coordinator.h"
#include "core/platform/file_storage.h"
#include "core/platform/frontmost_app_observing.h"
#include "core/platform/local_key_monitoring.h"
#include "core/platform/login_item.h"
#include "core/platform/preferences_storing.h"
#include "core/platform/report_delivering.h"
#include "core/platform/running_apps.h"
#include "core/platform/system_settings_opening.h"
#include "model/diagnostics_environment.h"
#include "platform/linux/accessibility/atspi_secure_input.h"
#include "platform/linux/activation/activation_server.h"
#include "platform/linux/applications/x11_frontmost_app_observer.h"
#include "platform/linux/base/system_log.h"
#include "platform/linux/desktop/desktop_appearance.h"
#include "platform/linux/sources/linux_input_sources.h"
#include "platform/linux/switch_keys/desktop_switch_keys.h"
#include "platform/linux/system_events/linux_system_event_observer.h"
#include "platform/linux/x11/x11_key_hook.h"
#include "platform/linux/x11/x11_listen_source.h"
#include "platform/linux/xkb/xkb_input_sources.h"
#include "ui/menubar/tray_hosting.h"

#include <QDBusConnection>
#include <memory>
#include <string>

namespace hopsel {

class LinuxPlatform {
  public:
    /// Throws `std::runtime_error`, in words for the user, if this session lacks what nothing can work
    /// without. Needs no application object.
    static void requireSession();
    /// Throws likewise.
    LinuxPlatform();

    /// Clock, calendar and facts; read once at start.
    static DiagnosticsEnvironment environment();
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
    /// Gets the program the right to show a window in front. Here a window that asks for it has the right.
    static void comeToFront() {}

    /// Key-ups may have been lost in sleep or in another session: the keyboard is read again.
    void recoverFrom(SystemEvent event);

    enum class Connection { kept, regained, lost };
    /// Called every two seconds: takes up again what was lost with a server or a bus.
    Connection retry();
    /// The display's server went away.
    void setOnLost(std::function<void()> callback) { layouts_->onLost = std::move(callback); }
    /// Why there is no listening, in words for the user; empty when there is.
    const std::string& listeningFailure() const { return listenSource_->failure(); }

  private:
    SystemLog log_;
    QDBusConnection bus_;
    std::shared_ptr<XkbInputSources> layouts_; ///< of the X server
    std::shared_ptr<LinuxInputSources> sources_;
    std::shared_ptr<X11KeyHook> hook_;
    std::shared_ptr<X11ListenSource> listenSource_;
    std::shared_ptr<DesktopSwitchKeys> switchKeys_;
    std::shared_ptr<AtspiSecureInput> secureInput_;
    LinuxSystemEventObserver systemObserver_;
    X11FrontmostAppObserver frontmostObserver_;
    std::unique_ptr<DesktopAppearance> appearance_;
    std::unique_ptr<ActivationServer> activation_;
};

} // namespace hopsel
