// The one-character label of an input source: "한", "あ", "中", "A". Pure.
#pragma once

#include <string>
#include <vector>

namespace hopsel::source_label {

/// By the first language if it is one of the four that have a label, else the first character of the name in
/// upper case; "?" when there is none. `name` is UTF-8.
std::string label(const std::vector<std::string>& languages, const std::string& name);

} // namespace hopsel::source_label
