// The user's languages, most wanted first, as set in the system's settings or for this program alone.
// Stateless.
#pragma once

#include <string>
#include <vector>

namespace hopsel {

/// Identifiers such as "ko-KR".
std::vector<std::string> preferredLanguages();

} // namespace hopsel
