// Everything of Linux that the program is built from: makes the live implementations and knows how they hang
// together.
//
// Made by the delegate first and destroyed last; the delegate hands its pieces on through their interfaces.
// The one place that knows the live types of this platform.
#pragma once

#include "platform/interface/platform.h"
#include "platform/linux/accessibility/atspi_secure_input.h"
#include "platform/linux/activation/activation_server.h"
#include "platform/linux/applications/window_observer.h"
#include "platform/linux/base/system_log.h"
#include "platform/linux/bus/bus_link.h"
#include "platform/linux/desktop/desktop_appearance.h"
#include "platform/linux/gnome/gnome_extension.h"
#include "platform/linux/gnome/gnome_frontmost_app.h"
#include "platform/linux/keys/key_session.h"
#include "platform/linux/sources/linux_input_sources.h"
#include "platform/linux/switch_keys/desktop_switch_keys.h"
#include "platform/linux/system_events/linux_system_event_observer.h"
#include "platform/linux/system_events/lock_secure_input.h"
#include "platform/linux/xkb/xkb_input_sources.h"

#include <memory>
#include <string>

namespace hopsel {

class LinuxPlatform final : public Platform {
  public:
    /// Throws `std::runtime_error`, in words for the user, if this session lacks what nothing can work
    /// without. Needs no application object.
    static void requireSession();
    /// Throws likewise.
    LinuxPlatform();

    DiagnosticsEnvironment environment() const override;
    Log& log() override { return log_; }
    std::shared_ptr<FileStorage> storage() const override;
    EngineCoordinator::Parts engineParts() override;
    std::shared_ptr<SecureInputProviding> secureInput() const override { return secureInput_; }
    std::shared_ptr<InputSourceCatalog> inputSources() const override { return sources_; }
    std::shared_ptr<LoginItemControlling> loginItem() override;
    std::shared_ptr<SystemSettingsOpening> settingsOpener() override;
    std::shared_ptr<PreferencesStoring> preferences() override;
    std::shared_ptr<RunningAppsProviding> runningApps() override;
    std::shared_ptr<ReportDelivering> reportDelivery() override;
    std::function<bool(const ShortcutKey&)> systemShortcutConflict() const override;
    std::shared_ptr<LocalKeyMonitoring> localKeys() override;
    std::unique_ptr<TrayHosting> trayHost() override;
    SystemEventObserving& systemObserver() override { return systemObserver_; }
    FrontmostAppObserving& frontmostObserver() override {
        return gnomeFront_ ? static_cast<FrontmostAppObserving&>(*gnomeFront_) : *frontmostObserver_;
    }
    l10n::SystemWords words() const override;
    void followAppearance(std::function<void(design::Appearance)> onChange) override;
    void setOnReopen(std::function<void()> callback) override;
    void setOnCommand(CommandHandler handler) override;
    void recoverFrom(SystemEvent event) override;
    /// Of servers and buses.
    Connection retry() override;
    bool needsRetry() const override;
    void setOnLost(const std::function<void()>& callback) override;
    std::string listeningFailure() const override { return keys_->listeningFailure(); }

  private:
    SystemLog log_;
    std::shared_ptr<BusLink> bus_;             ///< of the session
    std::shared_ptr<XkbInputSources> layouts_; ///< of the X server; null where nothing here needs one
    std::shared_ptr<GnomeExtension> gnome_;
    std::shared_ptr<LinuxInputSources> sources_;
    std::unique_ptr<KeySession> keys_;
    std::shared_ptr<DesktopSwitchKeys> switchKeys_;
    std::shared_ptr<AtspiSecureInput> passwordFields_;
    std::shared_ptr<LockSecureInput> secureInput_;
    LinuxSystemEventObserver systemObserver_;
    std::unique_ptr<WindowObserver> frontmostObserver_;
    std::unique_ptr<GnomeFrontmostApp> gnomeFront_; ///< where the shell tells; the other one rests then
    std::unique_ptr<DesktopAppearance> appearance_;
    std::unique_ptr<ActivationServer> activation_;
};

} // namespace hopsel
