#include "platform/macos/base/activation.h"

#import <AppKit/AppKit.h>

// The calls for older systems are meant where they stand, whatever newer headers say of them.
#pragma clang diagnostic ignored "-Wdeprecated-declarations"

namespace hopsel::activation {

void comeToFront() {
    if (@available(macOS 14.0, *))
        [NSApp activate];
    else
        [NSApp activateIgnoringOtherApps:YES];
}

bool giveFrontTo(std::int64_t process) {
    NSRunningApplication* other =
        [NSRunningApplication runningApplicationWithProcessIdentifier:static_cast<pid_t>(process)];
    if (other == nil) return false;
    if (@available(macOS 14.0, *)) {
        [NSApp yieldActivationToApplication:other];
        return [other activateFromApplication:NSRunningApplication.currentApplication options:0];
    }
    return [other activateWithOptions:0];
}

} // namespace hopsel::activation
