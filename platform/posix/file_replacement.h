// Giving a file other contents in one durable step, and what such a step leaves when the power goes.
//
// Functions without state. The new contents are written beside the file, under a name of their own that is
// locked as long as its writer lives, and take its name at the end.
#pragma once

#include <filesystem>
#include <functional>
#include <string_view>

namespace hopsel::file_replacement {

/// Follows links to the file they name. `mayReplace` is asked for that file as late as possible; if it says
/// no, nothing is replaced and the answer is false. Throws `std::system_error`.
bool write(const std::filesystem::path& file, std::string_view bytes,
           const std::function<bool(const std::filesystem::path& target)>& mayReplace);

/// Removes the names beside the file that no writer holds any more.
void clearLeftovers(const std::filesystem::path& file);

} // namespace hopsel::file_replacement
