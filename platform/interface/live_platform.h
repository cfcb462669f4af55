// Makes the platform that the program is built for. Each operating system defines these functions in its own
// live_platform.cpp, and the build links one of them.
#pragma once

#include "platform/interface/launch.h"
#include "platform/interface/platform.h"
#include "platform/interface/single_instance.h"

#include <memory>
#include <string>
#include <vector>

namespace hopsel {

/// Throws `std::runtime_error`, in words for the user, if this session lacks what nothing can work without.
std::unique_ptr<Launch> makeLaunch();
std::unique_ptr<SingleInstance> makeSingleInstance();
/// Throws likewise.
std::unique_ptr<Platform> makePlatform();

/// The user's languages, most wanted first. Needs neither a session nor an application object.
std::vector<std::string> preferredLanguages();

} // namespace hopsel
