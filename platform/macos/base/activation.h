// Who is in front. Since macOS 14 an application gives the front to another one; none can take it.
//
// Functions on the one application object, which the toolkit has made before.
#pragma once

#include <cstdint>

namespace hopsel::activation {

/// Brings this program to the front, as far as the system lets it: after the user has done something with it.
/// An accessory application has to ask, or its windows appear behind those of the application in front.
void comeToFront();
/// Gives the front to another program; false if there is none with this process.
bool giveFrontTo(std::int64_t process);

} // namespace hopsel::activation
