#include "app/macos/workspace/bundle_instance.h"

#import <AppKit/AppKit.h>

namespace hopsel {

namespace {

NSRunningApplication* otherCopy() {
    NSString* identifier = NSBundle.mainBundle.bundleIdentifier;
    if (identifier == nil) return nil;
    const pid_t ours = NSProcessInfo.processInfo.processIdentifier;
    for (NSRunningApplication* copy in
         [NSRunningApplication runningApplicationsWithBundleIdentifier:identifier]) {
        if (copy.processIdentifier != ours) return copy;
    }
    return nil;
}

} // namespace

std::optional<std::int64_t> BundleInstance::otherProcess() const {
    NSRunningApplication* other = otherCopy();
    if (other == nil) return std::nullopt;
    return other.processIdentifier;
}

bool BundleInstance::activateOther() const { return [otherCopy() activateWithOptions:0]; }

} // namespace hopsel
