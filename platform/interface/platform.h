// Everything of an operating system that the program is built from, as the delegate knows it.
//
// One implementation for each system, which makes the live pieces and knows how they hang together; the tests
// have one that is played. Made by the delegate first and destroyed last; the delegate hands the pieces on
// through their own interfaces.
#pragma once

#include "core/engine/engine_coordinator.h"
#include "core/platform/file_storage.h"
#include "core/platform/frontmost_app_observing.h"
#include "core/platform/local_key_monitoring.h"
#include "core/platform/log.h"
#include "core/platform/login_item.h"
#include "core/platform/preferences_storing.h"
#include "core/platform/report_delivering.h"
#include "core/platform/running_apps.h"
#include "core/platform/system_event.h"
#include "core/platform/system_settings_opening.h"
#include "model/diagnostics_environment.h"
#include "model/texts/system_words.h"
#include "ui/design/colors.h"
#include "ui/menubar/tray_hosting.h"

#include <functional>
#include <memory>
#include <string>

namespace hopsel {

class Platform {
  public:
    Platform() = default;
    Platform(const Platform&) = delete;
    Platform& operator=(const Platform&) = delete;
    virtual ~Platform() = default;

    /// Clock, calendar and facts; read once at start.
    virtual DiagnosticsEnvironment environment() const = 0;
    virtual Log& log() = 0;
    /// Where the user's settings file lies.
    virtual std::shared_ptr<FileStorage> storage() const = 0;
    /// The clock and the limit of a tap are the caller's to add.
    virtual EngineCoordinator::Parts engineParts() = 0;
    virtual std::shared_ptr<SecureInputProviding> secureInput() const = 0;
    virtual std::shared_ptr<InputSourceCatalog> inputSources() const = 0;
    virtual std::shared_ptr<LoginItemControlling> loginItem() = 0;
    virtual std::shared_ptr<SystemSettingsOpening> settingsOpener() = 0;
    virtual std::shared_ptr<PreferencesStoring> preferences() = 0;
    virtual std::shared_ptr<RunningAppsProviding> runningApps() = 0;
    virtual std::shared_ptr<ReportDelivering> reportDelivery() = 0;
    /// True for a combination with which the system itself switches input sources.
    virtual std::function<bool(const ShortcutKey&)> systemShortcutConflict() const = 0;
    virtual std::shared_ptr<LocalKeyMonitoring> localKeys() = 0;
    virtual std::unique_ptr<TrayHosting> trayHost() = 0;
    virtual SystemEventObserving& systemObserver() = 0;
    virtual FrontmostAppObserving& frontmostObserver() = 0;

    /// What this system calls its keys and places, where the table of texts has other names.
    virtual l10n::SystemWords words() const { return {}; }
    /// Tells light or dark at once, and every change.
    virtual void followAppearance(std::function<void(design::Appearance)> onChange) = 0;
    /// Called when the user starts the program again, which is to bring its window to the front.
    virtual void setOnReopen(std::function<void()> callback) = 0;
    /// Called with what another start of the program asks of this one, in words of the two; it is to be
    /// answered once, soon or later.
    using Answer = std::function<void(const std::string& reply)>;
    using CommandHandler = std::function<void(const std::string& request, const Answer& answer)>;
    /// After `setOnReopen`.
    virtual void setOnCommand(CommandHandler /*handler*/) {}
    /// Gets the program the right to show a window in front, where a window that asks for it has not got it.
    virtual void comeToFront() {}

    /// Key-ups may have been lost in sleep or in another session.
    virtual void recoverFrom(SystemEvent /*event*/) {}

    enum class Connection { kept, regained, lost };
    /// Takes up again what was lost, and looks at what does not tell of its changes.
    virtual Connection retry() = 0;
    /// It is to be called every two seconds, for now. Asked each time before the event loop sleeps.
    virtual bool needsRetry() const { return true; }
    /// The connection to the display was lost.
    virtual void setOnLost(const std::function<void()>& /*callback*/) {}
    /// Why there is no listening, in words for whoever started the program from a terminal; empty when there
    /// is, and where windows and menu say it better.
    virtual std::string listeningFailure() const { return {}; }
};

} // namespace hopsel
