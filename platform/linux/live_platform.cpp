#include "platform/interface/live_platform.h"

#include "platform/linux/activation/lock_file_instance.h"
#include "platform/linux/linux_launch.h"
#include "platform/linux/linux_platform.h"

namespace hopsel {

std::unique_ptr<Launch> makeLaunch() { return std::make_unique<LinuxLaunch>(); }

std::unique_ptr<SingleInstance> makeSingleInstance() { return std::make_unique<LockFileInstance>(); }

std::unique_ptr<Platform> makePlatform() { return std::make_unique<LinuxPlatform>(); }

} // namespace hopsel
