#include "platform/macos/desktop/local_key_monitor.h"

#import <AppKit/AppKit.h>

namespace hopsel {

struct LocalKeyMonitor::Registration {
    id monitor;
};

LocalKeyMonitor::LocalKeyMonitor() = default;

LocalKeyMonitor::~LocalKeyMonitor() { stop(); }

void LocalKeyMonitor::start(std::function<void(const LocalKeyDown&)> onKeyDown) {
    stop();
    const auto shared = std::make_shared<std::function<void(const LocalKeyDown&)>>(std::move(onKeyDown));
    id monitor = [NSEvent addLocalMonitorForEventsMatchingMask:NSEventMaskKeyDown
                                                       handler:^NSEvent*(NSEvent* event) {
                                                         // The callback may stop us, which frees this block.
                                                         const auto callback = shared;
                                                         (*callback)({event.keyCode, event.modifierFlags,
                                                                      static_cast<bool>(event.isARepeat)});
                                                         return nil;
                                                       }];
    registration_ = std::make_unique<Registration>(Registration{monitor});
}

void LocalKeyMonitor::stop() {
    if (!registration_) return;
    [NSEvent removeMonitor:registration_->monitor];
    registration_.reset();
}

} // namespace hopsel
