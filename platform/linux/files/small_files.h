// Small files that anybody may have written: read with a limit, and copied aside before they are replaced.
// Functions without state.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

namespace hopsel {

inline constexpr std::size_t maxSmallFile = std::size_t{1} << 20U;

/// The whole file. Nothing when it is missing, no regular file (a FIFO is never waited for), unreadable or
/// larger than that.
std::optional<std::string> readSmallFile(const std::filesystem::path& file);

/// Copies to the first free of "<file>.damaged", "<file>.damaged-2", ... and returns that name. Throws
/// `std::system_error`.
std::filesystem::path copyAside(const std::filesystem::path& file);

} // namespace hopsel
