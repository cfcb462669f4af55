#include "platform/interface/live_platform.h"

#include "platform/macos/applications/bundle_instance.h"
#include "platform/macos/macos_launch.h"
#include "platform/macos/macos_platform.h"

namespace hopsel {

std::unique_ptr<Launch> makeLaunch() { return std::make_unique<MacosLaunch>(); }

std::unique_ptr<SingleInstance> makeSingleInstance() { return std::make_unique<BundleInstance>(); }

std::unique_ptr<Platform> makePlatform() { return std::make_unique<MacosPlatform>(); }

} // namespace hopsel
