// Sleep, lock and session changes on Linux: from logind on the system bus, and from the desktop's screen
// saver on the session bus.
//
// Owned by the platform. A bus that is not there, or goes, is taken up by `retry`; a service that is not
// there, when it comes. The screen counts as locked while logind or a screen saver says so, and each change
// is told once, whoever says it first.
#pragma once

#include "core/platform/input_source_service.h"
#include "core/platform/system_event.h"
#include "platform/linux/bus/bus_link.h"
#include "platform/linux/system_events/logind_watch.h"
#include "platform/linux/system_events/screen_saver_watch.h"

#include <memory>

namespace hopsel {

class LinuxSystemEventObserver final : public SystemEventObserving {
  public:
    /// While started it has the catalog's `onSourcesChanged`.
    explicit LinuxSystemEventObserver(std::shared_ptr<InputSourceCatalog> catalog);
    ~LinuxSystemEventObserver() override;

    void start() override;
    void stop() override;
    /// Connects to the buses that are not connected. Cheap when they are.
    void retry();

  private:
    void tell(SystemEvent event) const;
    void updateLock(bool isChange);

    std::shared_ptr<InputSourceCatalog> catalog_;
    bool isStarted_ = false;
    SessionState session_;
    bool isSaverActive_ = false;
    bool isLocked_ = false;
    BusLink systemBus_{QDBusConnection::SystemBus};
    BusLink sessionBus_{QDBusConnection::SessionBus};
    std::unique_ptr<LogindWatch> logind_;
    std::unique_ptr<ScreenSaverWatch> savers_;
};

} // namespace hopsel
