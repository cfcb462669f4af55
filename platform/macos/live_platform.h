// The names by which start-up knows the platform that it is built for; here they stand for macOS.
//
// The build hands this file on as "app/live_platform.h". Every platform has one, and what its names stand for
// has the same shape on all of them.
#pragma once

#include "platform/macos/applications/bundle_instance.h"
#include "platform/macos/macos_launch.h"
#include "platform/macos/macos_platform.h"

namespace hopsel {

using LiveLaunch = MacosLaunch;
using LivePlatform = MacosPlatform;
using LiveSingleInstance = BundleInstance;

} // namespace hopsel
