#include "platform/macos/applications/live_running_apps.h"

#include "platform/macos/base/text_values.h"

#import <AppKit/AppKit.h>

namespace hopsel {

std::vector<std::string> LiveRunningApps::runningBundleIDs() {
    std::vector<std::string> identifiers;
    for (NSRunningApplication* application in NSWorkspace.sharedWorkspace.runningApplications) {
        if (auto identifier = textOf(application.bundleIdentifier))
            identifiers.push_back(std::move(*identifier));
    }
    return identifiers;
}

} // namespace hopsel
