// XCB's binding of the X keyboard extension, whose header uses a C++ keyword as a name.
#pragma once
#pragma GCC system_header // Clang warns of the keyword in the macro below

#include "session/x_display.h"

#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

namespace hopsel::session {

/// Announces the extension on the connection and returns its first event code. Throws `std::runtime_error`.
std::uint8_t useXkb(XDisplay& display);

} // namespace hopsel::session
