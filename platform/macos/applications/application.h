// The process as the system sees it: an application without a place in the Dock.
//
// Functions on the one application object, which the toolkit has made before.
#pragma once

#include <string>

namespace hopsel::application {

/// No icon in the Dock and no main menu.
void becomeAccessory();
/// "14.5.0": the patch is always written.
std::string systemVersion();

} // namespace hopsel::application
