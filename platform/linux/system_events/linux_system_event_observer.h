// Sleep, lock and session changes on Linux: from logind on the system bus, and from the desktop's screen
// saver on the session bus or the X server.
//
// Owned by the platform. A bus or a service that is not there, or goes, is taken up when it comes. The screen
// counts as locked while logind or a screen saver says so, and each change is told once, whoever says it
// first.
#pragma once

#include "core/platform/input_source_service.h"
#include "core/platform/system_event.h"
#include "platform/linux/system_events/logind_watch.h"
#include "platform/linux/system_events/screen_saver_watch.h"
#include "platform/linux/system_events/x_screen_saver_watch.h"

#include <memory>

namespace hopsel {

class LinuxSystemEventObserver final : public SystemEventObserving {
  public:
    /// While started it has the catalog's `onSourcesChanged`.
    LinuxSystemEventObserver(std::shared_ptr<InputSourceCatalog> catalog, std::shared_ptr<BusLink> systemBus,
                             std::shared_ptr<BusLink> sessionBus);
    ~LinuxSystemEventObserver() override;

    void start() override;
    void stop() override;
    /// Takes the X server up again, if it was lost.
    void retry();
    bool isLost() const { return xSaver_ && xSaver_->isLost(); }

    /// Told of each change, and of a screen that is found locked.
    std::function<void(bool isLocked)> onLocked;

  private:
    void tell(SystemEvent event) const;
    void updateLock(bool isChange);

    std::shared_ptr<InputSourceCatalog> catalog_;
    bool isStarted_ = false;
    SessionState session_;
    bool isSaverActive_ = false;
    bool isXSaverLocked_ = false;
    bool isLocked_ = false;
    std::shared_ptr<BusLink> systemBus_;
    std::shared_ptr<BusLink> sessionBus_;
    std::unique_ptr<LogindWatch> logind_;
    std::unique_ptr<ScreenSaverWatch> savers_;
    std::unique_ptr<XScreenSaverWatch> xSaver_;
};

} // namespace hopsel
