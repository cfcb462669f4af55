// The system's own keyboard shortcuts, as the user has set them, for the check whether a trigger is one of
// them.
//
// Stateless; reads the preferences "com.apple.symbolichotkeys" at each call. Only the two entries that switch
// input sources are looked at, and of these no more than the check needs.
#pragma once

#include <nlohmann/json_fwd.hpp>

namespace hopsel::symbolic_hot_keys {

/// In the form of core/rules/system_shortcut_conflict.h. An entry that the user never changed is absent; one
/// that holds something else than expected is there, with null in the place of what is wrong.
nlohmann::json read();

} // namespace hopsel::symbolic_hot_keys
