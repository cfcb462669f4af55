// The system's own list of event taps, which tells what a tap really hears.
//
// Without the permission the system clears the keys from what a tap asked for. A tap that asked for more than
// keys is made all the same, and hears only the rest; and the calls that tell of permissions may answer what
// was true when the program started. Stateless.
#pragma once

#include <CoreGraphics/CoreGraphics.h>
#include <optional>

namespace hopsel::tap_list {

/// Whether the enabled tap of this process that was made with `options` and `mask` hears all keys in the
/// mask. Absent if the list does not know it.
std::optional<bool> hearsKeys(CGEventTapOptions options, CGEventMask mask);

} // namespace hopsel::tap_list
