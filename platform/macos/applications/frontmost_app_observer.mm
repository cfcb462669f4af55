#include "platform/macos/applications/frontmost_app_observer.h"

#include "platform/macos/base/text_values.h"

#import <AppKit/AppKit.h>

namespace hopsel {

struct FrontmostAppObserver::Registration {
    FrontmostAppObserver* observer;
    id token;
};

FrontmostAppObserver::FrontmostAppObserver() = default;

FrontmostAppObserver::~FrontmostAppObserver() {
    if (registration_) [NSWorkspace.sharedWorkspace.notificationCenter removeObserver:registration_->token];
}

void FrontmostAppObserver::start() {
    if (registration_) return;
    registration_ = std::make_shared<Registration>(Registration{this, nil});
    const std::weak_ptr<Registration> weak = registration_;
    registration_->token = [NSWorkspace.sharedWorkspace.notificationCenter
        addObserverForName:NSWorkspaceDidActivateApplicationNotification
                    object:nil
                     queue:NSOperationQueue.mainQueue
                usingBlock:^(NSNotification* notification) {
                  const auto registration = weak.lock();
                  if (!registration) return;
                  id application = notification.userInfo[NSWorkspaceApplicationKey];
                  const bool isOne = [application isKindOfClass:[NSRunningApplication class]];
                  registration->observer->report(
                      isOne ? textOf(static_cast<NSRunningApplication*>(application).bundleIdentifier)
                            : std::nullopt);
                }];
    report(textOf(NSWorkspace.sharedWorkspace.frontmostApplication.bundleIdentifier));
}

void FrontmostAppObserver::report(const std::optional<std::string>& bundleID) const {
    if (onChange) onChange(bundleID);
}

} // namespace hopsel
