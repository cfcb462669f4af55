#include "platform/macos/macos_platform.h"

#include "core/platform/input_source_switcher.h"
#include "core/rules/system_shortcut_conflict.h"
#include "platform/macos/applications/application.h"
#include "platform/macos/applications/live_running_apps.h"
#include "platform/macos/base/activation.h"
#include "platform/macos/base/autorelease_pool.h"
#include "platform/macos/base/main_loop.h"
#include "platform/macos/desktop/live_report_delivery.h"
#include "platform/macos/desktop/live_workspace.h"
#include "platform/macos/desktop/local_key_monitor.h"
#include "platform/macos/desktop/sm_app_login_item.h"
#include "platform/macos/desktop/user_defaults_preferences.h"
#include "platform/macos/desktop/workspace_settings_opener.h"
#include "platform/macos/keys/live_guest_key_sender.h"
#include "platform/macos/menu_bar/menu_bar_host.h"
#include "platform/macos/sources/layout_detour.h"
#include "platform/macos/switch_keys/symbolic_hot_keys.h"
#include "platform/macos/system_events/system_secure_input.h"
#include "platform/posix/posix_file_storage.h"

#include <QStandardPaths>
#include <nlohmann/json.hpp>
#include <utility>

namespace hopsel {

MacosPlatform::MacosPlatform()
    : workspace_(std::make_shared<LiveWorkspace>()),
      sources_(std::make_shared<MacInputSourceCatalog>()),
      systemObserver_(sources_, makeWorkspaceNotifications()) {}

DiagnosticsEnvironment MacosPlatform::environment() const {
    const QTimeZone zone = QTimeZone::systemTimeZone();
    // The one that the program is built for.
    return {uptimeSeconds, [] { return QDateTime::currentDateTimeUtc(); },
            zone.isValid() ? zone : QTimeZone::utc(), application::systemVersion(), "arm64"};
}

std::shared_ptr<FileStorage> MacosPlatform::storage() const {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return std::make_shared<PosixFileStorage>(folder.toStdString());
}

EngineCoordinator::Parts MacosPlatform::engineParts() {
    EngineCoordinator::Parts parts;
    parts.source = listenTap_;
    parts.shortcutSource = activeTap_;
    parts.service = std::make_shared<LiveInputSourceService>(
        sources_, uptimeSeconds, runFor,
        [sources = sources_](const std::string& target) -> std::optional<std::string> {
            if (!UserDefaultsPreferences().passesThroughLayout()) return std::nullopt;
            return layoutDetour(target, sources->enabledKeyboardSources(), sources->currentID());
        });
    parts.secureInput = secureInput_;
    parts.guestKeySender = std::make_shared<LiveGuestKeySender>();
    parts.schedule = schedule;
    return parts;
}

std::shared_ptr<LoginItemControlling> MacosPlatform::loginItem() {
    return std::make_shared<SMAppLoginItem>();
}

std::shared_ptr<SystemSettingsOpening> MacosPlatform::settingsOpener() {
    return std::make_shared<WorkspaceSettingsOpener>(permissions_, workspace_);
}

std::shared_ptr<PreferencesStoring> MacosPlatform::preferences() {
    return std::make_shared<UserDefaultsPreferences>();
}

std::shared_ptr<RunningAppsProviding> MacosPlatform::runningApps() {
    return std::make_shared<LiveRunningApps>();
}

std::shared_ptr<ReportDelivering> MacosPlatform::reportDelivery() {
    return std::make_shared<LiveReportDelivery>(workspace_);
}

std::function<bool(const ShortcutKey&)> MacosPlatform::systemShortcutConflict() const {
    return [](const ShortcutKey& key) {
        return system_shortcut_conflict::conflictsWithSystem(key, symbolic_hot_keys::read);
    };
}

std::shared_ptr<LocalKeyMonitoring> MacosPlatform::localKeys() { return std::make_shared<LocalKeyMonitor>(); }

std::unique_ptr<TrayHosting> MacosPlatform::trayHost() { return std::make_unique<MenuBarHost>(); }

void MacosPlatform::followAppearance(std::function<void(design::Appearance)> onChange) {
    interfaceStyle_ = std::make_unique<InterfaceStyle>([onChange = std::move(onChange)](bool isDark) {
        onChange(isDark ? design::Appearance::dark : design::Appearance::light);
    });
}

void MacosPlatform::setOnReopen(std::function<void()> callback) {
    reopenObserver_ = std::make_unique<ReopenObserver>(std::move(callback));
}

MacosPlatform::Connection MacosPlatform::retry() {
    const AutoreleasePool pool;
    listenTap_->check();
    activeTap_->check();
    return Connection::kept;
}

void MacosPlatform::comeToFront() {
    activation::comeToFront();
    schedule(activation::comeToFront); // while the application is still launching, the first is not heard
}

} // namespace hopsel
