// The status codes that Linux input sources put into `select_result::Failed`.
//
// One table for all of them, because the codes reach the user in messages and bug reports: a number must mean
// the same whichever framework is in charge. Codes are never reused.
#pragma once

#include <cstdint>

namespace hopsel::platform_error {

/// The X server is gone, or has thrown us out. The connection is opened again by the retry timer.
inline constexpr std::int32_t connectionLost = 1;
/// The layout is configured, but the server cannot make it current: it has no group of its own there, as when
/// a layout is no different from the one before it, or when it is the fifth.
inline constexpr std::int32_t groupNotLockable = 2;
/// The input framework's daemon went away, before the request or before its answer.
inline constexpr std::int32_t frameworkGone = 3;
/// The input framework answered with an error.
inline constexpr std::int32_t frameworkRefused = 4;
/// No text field has the input framework's attention, so there is nothing it could switch.
inline constexpr std::int32_t noInputContext = 5;
/// The desktop has no call with which another program could switch its input source.
inline constexpr std::int32_t desktopCannotSwitch = 6;

} // namespace hopsel::platform_error
