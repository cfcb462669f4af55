#include "platform/linux/system_events/linux_system_event_observer.h"

#include "platform/linux/base/session_kind.h"

namespace hopsel {

LinuxSystemEventObserver::LinuxSystemEventObserver(std::shared_ptr<InputSourceCatalog> catalog,
                                                   std::shared_ptr<BusLink> systemBus,
                                                   std::shared_ptr<BusLink> sessionBus)
    : catalog_(std::move(catalog)), systemBus_(std::move(systemBus)), sessionBus_(std::move(sessionBus)) {}

LinuxSystemEventObserver::~LinuxSystemEventObserver() { stop(); }

void LinuxSystemEventObserver::start() {
    if (isStarted_) return;
    isStarted_ = true;
    catalog_->onSourcesChanged = [this] {
        if (const auto callback = onInputSourcesChanged) callback();
    };
    logind_ = std::make_unique<LogindWatch>(
        systemBus_, session_,
        LogindWatch::Callbacks{
            [this](bool goes) { tell(goes ? SystemEvent::willSleep : SystemEvent::didWake); },
            [this](bool isActive) {
                tell(isActive ? SystemEvent::sessionBecameActive : SystemEvent::sessionResigned);
            },
            [this](bool isChange) { updateLock(isChange); }});
    savers_ = std::make_unique<ScreenSaverWatch>(sessionBus_, [this](bool isActive) {
        isSaverActive_ = isActive;
        updateLock(true);
    });
    if (session_kind::isWayland()) return; // it would start an X server, whose saver locks nothing there
    xSaver_ = std::make_unique<XScreenSaverWatch>([this](bool isLocked) {
        isXSaverLocked_ = isLocked;
        updateLock(true);
    });
    xSaver_->connect();
}

void LinuxSystemEventObserver::retry() {
    if (xSaver_) xSaver_->connect();
}

void LinuxSystemEventObserver::stop() {
    if (!isStarted_) return;
    isStarted_ = false;
    catalog_->onSourcesChanged = nullptr;
    logind_.reset();
    savers_.reset();
    xSaver_.reset();
    session_ = {};
    isSaverActive_ = isXSaverLocked_ = false;
    updateLock(false); // nobody would tell that it ended
}

void LinuxSystemEventObserver::updateLock(bool isChange) {
    const bool isLocked = isSaverActive_ || isXSaverLocked_ || session_.isLocked.value_or(false);
    if (isLocked == isLocked_) return;
    isLocked_ = isLocked;
    if (const auto callback = onLocked) callback(isLocked);
    if (isChange) tell(isLocked ? SystemEvent::screenLocked : SystemEvent::screenUnlocked);
}

void LinuxSystemEventObserver::tell(SystemEvent event) const {
    if (const auto callback = onEvent) callback(event);
}

} // namespace hopsel
