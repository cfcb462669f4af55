#include "app/macos/workspace/live_running_apps.h"

#include "core/platform/macos/text_values.h"

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
