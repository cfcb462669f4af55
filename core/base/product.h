// Who we are: the names and addresses that more than one place needs, once each. Plain constants.
#pragma once

#include <string_view>

/// A macro, so that it can stand in the middle of a literal. The reserved domain stands until there is a
/// mailbox: whoever distributes the program puts theirs here.
#define HOPSEL_SUPPORT_ADDRESS "support@hopsel.example"

namespace hopsel::product {

/// For people.
inline constexpr std::string_view name = "Hopsel";
/// For Linux: the log, files and folders.
inline constexpr std::string_view applicationIdentifier = "hopsel";
/// For desktops: the bundle and the log on macOS, the desktop entry on Linux. The build reads it from this
/// line.
inline constexpr std::string_view bundleIdentifier = "app.hopsel.Hopsel";
/// Where bug reports go.
inline constexpr std::string_view supportAddress = HOPSEL_SUPPORT_ADDRESS;

} // namespace hopsel::product
