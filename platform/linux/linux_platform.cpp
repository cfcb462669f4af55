#include "platform/linux/linux_platform.h"

#include "core/platform/input_source_switcher.h"
#include "platform/linux/applications/hyprland_window_observer.h"
#include "platform/linux/applications/proc_running_apps.h"
#include "platform/linux/applications/sway_window_observer.h"
#include "platform/linux/applications/x11_frontmost_app_observer.h"
#include "platform/linux/base/main_loop.h"
#include "platform/linux/base/session_kind.h"
#include "platform/linux/bus/bus_address.h"
#include "platform/linux/desktop/autostart_login_item.h"
#include "platform/linux/desktop/desktop_settings_opener.h"
#include "platform/linux/desktop/report_delivery.h"
#include "platform/linux/desktop/settings_preferences.h"
#include "platform/linux/desktop/system_facts.h"
#include "platform/linux/desktops/gnome_sources.h"
#include "platform/linux/desktops/hyprland_layouts.h"
#include "platform/linux/desktops/kde_layouts.h"
#include "platform/linux/desktops/sway_layouts.h"
#include "platform/linux/fcitx/fcitx_input_sources.h"
#include "platform/linux/gnome/gnome_key_session.h"
#include "platform/linux/gnome/gnome_secure_input.h"
#include "platform/linux/gnome/gnome_shell.h"
#include "platform/linux/gnome/gnome_switched_keys.h"
#include "platform/linux/ibus/ibus_input_sources.h"
#include "platform/linux/kde_keys/kde_key_session.h"
#include "platform/linux/keys_helper/session/helper_key_session.h"
#include "platform/linux/latin_start/latin_start.h"
#include "platform/linux/texts/linux_words.h"
#include "platform/linux/tray/tray_host.h"
#include "platform/linux/wayland/wayland_display.h"
#include "platform/linux/wayland/wayland_local_key_monitor.h"
#include "platform/linux/x11/x11_input_devices.h"
#include "platform/linux/x11/x11_key_session.h"
#include "platform/linux/x11/x11_local_key_monitor.h"
#include "platform/posix/posix_file_storage.h"

#include <QGuiApplication>
#include <stdexcept>

namespace hopsel {

namespace {

/// The first that is in charge goes before the others: Fcitx5 and GNOME also answer for IBus.
std::vector<std::unique_ptr<InputFramework>>
frameworks(const std::shared_ptr<BusLink>& bus, const std::shared_ptr<GnomeExtension>& gnome, Log& log) {
    std::vector<std::unique_ptr<InputFramework>> all;
    all.push_back(std::make_unique<FcitxInputSources>(bus));
    all.push_back(std::make_unique<GnomeShell>(gnome));
    // Where the shell has not our extension.
    all.push_back(std::make_unique<GnomeSources>(
        bus, session_kind::isGnome() ? GnomeSources::Rules::beforehand : GnomeSources::Rules::useless));
    all.push_back(std::make_unique<IbusInputSources>(bus, log));
    all.push_back(std::make_unique<KdeLayouts>(bus));
    all.push_back(std::make_unique<SwayLayouts>());
    all.push_back(std::make_unique<HyprlandLayouts>());
    return all;
}

bool hasX11Windows() { return QGuiApplication::platformName() != "wayland"; }

std::shared_ptr<XkbInputSources> layouts() {
    return session_kind::isWayland() ? nullptr : std::make_shared<XkbInputSources>();
}

std::unique_ptr<KeySession> keySession(const std::shared_ptr<BusLink>& bus,
                                       const std::shared_ptr<GnomeExtension>& gnome,
                                       const std::shared_ptr<LinuxInputSources>& sources, Log& log) {
    if (session_kind::isGnomeWayland())
        return std::make_unique<GnomeKeySession>(bus, gnome, uptimeSeconds, log);
    if (session_kind::isWayland() && session_kind::isKde())
        return std::make_unique<KdeKeySession>(bus, HelperPlaces::live(), uptimeSeconds, log);
    if (session_kind::isWayland())
        return std::make_unique<HelperKeySession>(HelperPlaces::live(), uptimeSeconds, log);
    auto keys = std::make_unique<X11KeySession>(uptimeSeconds, runFor, log);
    if (!session_kind::isGnome()) return keys;
    return std::make_unique<GnomeSwitchedKeys>(std::move(keys), bus, gnome, sources);
}

std::shared_ptr<SecureInputProviding> fields(const std::shared_ptr<GnomeExtension>& gnome,
                                             const std::shared_ptr<SecureInputProviding>& told) {
    return session_kind::isGnomeWayland() ? std::make_shared<GnomeSecureInput>(gnome, told) : told;
}

std::unique_ptr<WindowObserver> windowObserver() {
    if (session_kind::isWayland() && qEnvironmentVariableIsSet("SWAYSOCK"))
        return std::make_unique<SwayWindowObserver>();
    if (session_kind::isWayland() && qEnvironmentVariableIsSet("HYPRLAND_INSTANCE_SIGNATURE"))
        return std::make_unique<HyprlandWindowObserver>();
    return std::make_unique<X11FrontmostAppObserver>();
}

} // namespace

void LinuxPlatform::requireSession() {
    if (session_kind::isWayland()) {
        if (wayland_display::isThere() || session_kind::hasDisplay()) return;
        throw std::runtime_error("no display: no Wayland compositor can be reached, and DISPLAY is not set");
    }
    X11Connection connection;
    x11_input_devices::requireXInput2(connection);
    x11_input_devices::requireXkb(connection);
}

LinuxPlatform::LinuxPlatform()
    : bus_(std::make_shared<BusLink>(bus_address::session)),
      layouts_(layouts()),
      gnome_(std::make_shared<GnomeExtension>(bus_, log_)),
      sources_(std::make_shared<LinuxInputSources>(frameworks(bus_, gnome_, log_),
                                                   session_kind::isWayland() ? nullptr : layouts_,
                                                   std::make_shared<LatinStart>(bus_))),
      keys_(keySession(bus_, gnome_, sources_, log_)),
      switchKeys_(std::make_shared<DesktopSwitchKeys>(bus_, DesktopSwitchKeys::liveReaders())),
      passwordFields_(std::make_shared<AtspiSecureInput>(bus_, log_)),
      secureInput_(std::make_shared<LockSecureInput>(fields(gnome_, passwordFields_))),
      systemObserver_(sources_, std::make_shared<BusLink>(bus_address::system), bus_),
      frontmostObserver_(windowObserver()) {
    if (session_kind::isGnomeWayland()) gnomeFront_ = std::make_unique<GnomeFrontmostApp>(gnome_);
    keys_->onHandled = [sources = sources_.get()] {
        runScheduled();
        sources->noteUse();
    };
    systemObserver_.onLocked = [this](bool isLocked) { secureInput_->setLocked(isLocked); };
    // Some frameworks keep a source for each text field, and do not tell: it is looked up as the focus moves,
    // and again as a trigger may be going down.
    frontmostObserver_->onWindowChange = [this] {
        passwordFields_->windowChanged();
        sources_->askCurrent();
        sources_->noteUse();
    };
    keys_->onModifierDown = [this] { sources_->askCurrent(); };
}

DiagnosticsEnvironment LinuxPlatform::environment() const {
    const QTimeZone zone = QTimeZone::systemTimeZone();
    return {uptimeSeconds, [] { return QDateTime::currentDateTimeUtc(); },
            zone.isValid() ? zone : QTimeZone::utc(), system_facts::version(), system_facts::architecture()};
}

std::shared_ptr<FileStorage> LinuxPlatform::storage() const {
    return std::make_shared<PosixFileStorage>(PosixFileStorage::xdgDataHome());
}

EngineCoordinator::Parts LinuxPlatform::engineParts() {
    EngineCoordinator::Parts parts;
    parts.source = keys_->listenSource();
    parts.shortcutSource = keys_->shortcutSource();
    parts.service = std::make_shared<LiveInputSourceService>(sources_, uptimeSeconds, runFor);
    parts.secureInput = secureInput_;
    parts.guestKeySender = keys_->guestKeySender();
    parts.schedule = [keys = keys_.get()](std::function<void()> function) {
        keys->isHandling() ? putOff(std::move(function)) : schedule(std::move(function));
    };
    return parts;
}

std::shared_ptr<LoginItemControlling> LinuxPlatform::loginItem() {
    return std::make_shared<AutostartLoginItem>();
}

std::shared_ptr<SystemSettingsOpening> LinuxPlatform::settingsOpener() {
    return std::make_shared<DesktopSettingsOpener>(
        keys_->permissions(), helpPage(), log_,
        [sources = sources_]() -> const char* {
            return sources->inCharge() != nullptr ? sources->inCharge()->settingsProgram() : nullptr;
        },
        [this](const QObject* context, const std::function<void(const WayOut&)>& otherwise) {
            keys_->remedy(context, otherwise);
        });
}

std::shared_ptr<PreferencesStoring> LinuxPlatform::preferences() {
    return std::make_shared<SettingsPreferences>(log_);
}

std::shared_ptr<RunningAppsProviding> LinuxPlatform::runningApps() {
    return std::make_shared<ProcRunningApps>();
}

std::shared_ptr<ReportDelivering> LinuxPlatform::reportDelivery() {
    return std::make_shared<DesktopReportDelivery>(bus_, log_);
}

std::shared_ptr<LocalKeyMonitoring> LinuxPlatform::localKeys() {
    if (hasX11Windows()) return std::make_shared<X11LocalKeyMonitor>();
    return std::make_shared<WaylandLocalKeyMonitor>();
}

std::unique_ptr<TrayHosting> LinuxPlatform::trayHost() {
    return std::make_unique<TrayHost>(bus_, gnome_, hasX11Windows());
}

void LinuxPlatform::setOnLost(const std::function<void()>& callback) {
    if (layouts_) layouts_->onLost = callback;
}

std::function<bool(const ShortcutKey&)> LinuxPlatform::systemShortcutConflict() const {
    return [switchKeys = switchKeys_](const ShortcutKey& key) { return switchKeys->conflicts(key); };
}

l10n::SystemWords LinuxPlatform::words() const {
    return linuxWords(keys_->printedKeys(), session_kind::isGnome()     ? KeysFrom::gnomeExtension
                                            : session_kind::isWayland() ? KeysFrom::keyHelper
                                                                        : KeysFrom::xServer);
}

void LinuxPlatform::followAppearance(std::function<void(design::Appearance)> onChange) {
    appearance_ = std::make_unique<DesktopAppearance>(bus_);
    appearance_->onChange = std::move(onChange);
    appearance_->start();
}

void LinuxPlatform::setOnReopen(std::function<void()> callback) {
    activation_ = std::make_unique<ActivationServer>(bus_);
    activation_->onActivate = [callback = std::move(callback)](const QString& token) {
        // The toolkit takes the right to the focus from here when it activates a window.
        if (!token.isEmpty()) qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
        callback();
    };
}

/// After `setOnReopen`, which opens the channel.
void LinuxPlatform::setOnCommand(CommandHandler handler) { activation_->onCommand = std::move(handler); }

void LinuxPlatform::recoverFrom(SystemEvent event) {
    switch (event) {
    case SystemEvent::didWake:
    case SystemEvent::screenUnlocked:
    case SystemEvent::sessionBecameActive: keys_->resynchronise(); break;
    default: break;
    }
}

bool LinuxPlatform::needsRetry() const {
    return sources_->needsRetry() || passwordFields_->needsRetry() || (layouts_ && layouts_->isLost()) ||
           (!gnomeFront_ && frontmostObserver_->isLost()) || systemObserver_.isLost();
}

LinuxPlatform::Connection LinuxPlatform::retry() {
    passwordFields_->retry();
    sources_->retry();
    const bool wasLost = layouts_ && layouts_->isLost();
    if (wasLost && !layouts_->reconnect()) return Connection::lost;
    frontmostObserver().start();
    systemObserver_.retry();
    return wasLost ? Connection::regained : Connection::kept;
}

} // namespace hopsel
