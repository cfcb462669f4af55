#include "platform/macos/applications/bundle_instance.h"

#include "platform/macos/base/activation.h"

#import <AppKit/AppKit.h>
#include <utility>

namespace hopsel {

namespace {

/// Did it come before us? A copy without a date was not opened by the system and may be any age; if we have
/// none, the other stays: rather no copy than two.
bool isOlder(NSRunningApplication* copy, NSRunningApplication* than) {
    if (copy.launchDate == nil || than.launchDate == nil) return true;
    using Start = std::pair<double, pid_t>;
    return Start(copy.launchDate.timeIntervalSinceReferenceDate, copy.processIdentifier) <
           Start(than.launchDate.timeIntervalSinceReferenceDate, than.processIdentifier);
}

NSRunningApplication* olderCopy() {
    NSString* identifier = NSBundle.mainBundle.bundleIdentifier;
    if (identifier == nil) return nil;
    NSRunningApplication* ours = NSRunningApplication.currentApplication;
    for (NSRunningApplication* copy in
         [NSRunningApplication runningApplicationsWithBundleIdentifier:identifier]) {
        if (copy.processIdentifier != ours.processIdentifier && isOlder(copy, ours)) return copy;
    }
    return nil;
}

} // namespace

std::optional<std::int64_t> BundleInstance::otherProcess() const {
    NSRunningApplication* other = olderCopy();
    if (other == nil) return std::nullopt;
    return other.processIdentifier;
}

bool BundleInstance::activateOther() const {
    const std::optional<std::int64_t> other = otherProcess();
    return other && activation::giveFrontTo(*other);
}

} // namespace hopsel
