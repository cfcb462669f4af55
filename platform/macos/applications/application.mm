#include "platform/macos/applications/application.h"

#import <AppKit/AppKit.h>

namespace hopsel::application {

void becomeAccessory() { [NSApp setActivationPolicy:NSApplicationActivationPolicyAccessory]; }

std::string systemVersion() {
    const NSOperatingSystemVersion version = NSProcessInfo.processInfo.operatingSystemVersion;
    return std::to_string(version.majorVersion) + "." + std::to_string(version.minorVersion) + "." +
           std::to_string(version.patchVersion);
}

} // namespace hopsel::application
