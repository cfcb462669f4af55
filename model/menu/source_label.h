// The one-character label of an input source: "한", "あ", "中", "A". Pure.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace hopsel::source_label {

/// By the first language if it is one of the four that have a label, else the first character of the name in
/// upper case; "?" when there is none. `name` is UTF-8.
std::string label(const std::vector<std::string>& languages, const std::string& name);

/// For two sources whose labels are the same: the letter or digit with which each name begins to differ from
/// the other, in upper case: U and D for "English (US)" and "English (Dvorak)". `label` where a name has
/// none.
std::pair<std::string, std::string> toldApart(const std::string& label, const std::string& firstName,
                                              const std::string& secondName);

} // namespace hopsel::source_label
