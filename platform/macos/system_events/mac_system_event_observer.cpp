#include "platform/macos/system_events/mac_system_event_observer.h"

namespace hopsel {

MacSystemEventObserver::MacSystemEventObserver(std::shared_ptr<InputSourceCatalog> catalog,
                                               std::unique_ptr<WorkspaceNotifications> workspace)
    : catalog_(std::move(catalog)), workspace_(std::move(workspace)) {}

MacSystemEventObserver::~MacSystemEventObserver() { stop(); }

void MacSystemEventObserver::start() {
    if (isStarted_) return;
    isStarted_ = true;
    workspace_->start([this](SystemEvent event) { tell(event); });
    // Posted by the system, but named in none of its headers.
    locked_.emplace(CFSTR("com.apple.screenIsLocked"), [this] { tell(SystemEvent::screenLocked); });
    unlocked_.emplace(CFSTR("com.apple.screenIsUnlocked"), [this] { tell(SystemEvent::screenUnlocked); });
    catalog_->onSourcesChanged = [this] {
        if (const auto callback = onInputSourcesChanged) callback();
    };
}

void MacSystemEventObserver::stop() {
    if (!isStarted_) return;
    isStarted_ = false;
    catalog_->onSourcesChanged = nullptr;
    unlocked_.reset();
    locked_.reset();
    workspace_->stop();
}

void MacSystemEventObserver::tell(SystemEvent event) const {
    if (const auto callback = onEvent) callback(event);
}

} // namespace hopsel
