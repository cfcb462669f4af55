// Writes JSON the way settings files look: members sorted by name in byte order, two blanks a level, " : "
// between name and value, UTF-8 unescaped, no newline at the end. Equal documents give equal bytes.
// Stateless.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace hopsel {

/// Throws `std::invalid_argument` if a string or a name is not UTF-8.
std::string writeJson(const nlohmann::json& document);

} // namespace hopsel
