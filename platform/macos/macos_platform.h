// Everything of macOS that the program is built from: makes the live implementations and knows how they hang
// together.
//
// Made by the delegate first and destroyed last; the delegate hands its pieces on through their interfaces.
// The one place that knows the live types of this platform. Its shape is that of the other platforms; what
// cannot happen here does nothing.
#pragma once

#include "platform/interface/platform.h"
#include "platform/macos/applications/frontmost_app_observer.h"
#include "platform/macos/applications/reopen_observer.h"
#include "platform/macos/base/system_log.h"
#include "platform/macos/desktop/interface_style.h"
#include "platform/macos/desktop/workspace.h"
#include "platform/macos/keys/active_tap.h"
#include "platform/macos/keys/listen_tap.h"
#include "platform/macos/keys/mac_permissions.h"
#include "platform/macos/sources/mac_input_source_catalog.h"
#include "platform/macos/system_events/mac_system_event_observer.h"
#include "platform/macos/system_events/system_secure_input.h"

#include <functional>
#include <memory>
#include <string>

namespace hopsel {

class MacosPlatform final : public Platform {
  public:
    MacosPlatform();

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
    FrontmostAppObserving& frontmostObserver() override { return frontmostObserver_; }
    void followAppearance(std::function<void(design::Appearance)> onChange) override;
    void setOnReopen(std::function<void()> callback) override;
    void comeToFront() override;
    /// Looks after the taps, which the system may take away without a word.
    Connection retry() override;

  private:
    SystemLog log_;
    std::shared_ptr<Workspace> workspace_;
    std::shared_ptr<MacInputSourceCatalog> sources_;
    std::shared_ptr<SystemSecureInput> secureInput_ = std::make_shared<SystemSecureInput>();
    std::shared_ptr<MacPermissions> permissions_ = std::make_shared<MacPermissions>();
    std::shared_ptr<ListenTap> listenTap_ = std::make_shared<ListenTap>(permissions_);
    std::shared_ptr<ActiveTap> activeTap_ = std::make_shared<ActiveTap>(log_, permissions_);
    MacSystemEventObserver systemObserver_;
    FrontmostAppObserver frontmostObserver_;
    std::unique_ptr<InterfaceStyle> interfaceStyle_;
    std::unique_ptr<ReopenObserver> reopenObserver_;
};

} // namespace hopsel
