// The names by which start-up knows the platform that it is built for; here they stand for Linux.
//
// The build hands this file on as "app/live_platform.h". Every platform has one, and what its names stand for
// has the same shape on all of them.
#pragma once

#include "platform/linux/activation/single_instance.h"
#include "platform/linux/linux_launch.h"
#include "platform/linux/linux_platform.h"

namespace hopsel {

using LiveLaunch = LinuxLaunch;
using LivePlatform = LinuxPlatform;
using LiveSingleInstance = SingleInstance;

} // namespace hopsel
