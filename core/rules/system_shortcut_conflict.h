// Is a shortcut trigger also the system's own key for switching input sources, so that both would act? Pure:
// the system's settings are handed in.
//
// They come in the form macOS keeps them ("AppleSymbolicHotKeys"): an object from a hot-key number to
// {"enabled": …, "value": {"parameters": [character, key code, flags], "type": "standard"}}. Entry "60"
// selects the previous input source, "61" the next. Other platforms turn their own bindings into the same
// object.
#pragma once

#include "core/keys/shortcut_key.h"

#include <functional>
#include <nlohmann/json_fwd.hpp>

namespace hopsel::system_shortcut_conflict {

/// Reads the system's hot keys; anything but an object counts as an empty one.
using HotKeyReader = std::function<nlohmann::json()>;

/// Sides do not matter to the system. An entry that is absent has the stock setting (Control+Space,
/// Control+Option+Space); one that is malformed conflicts with nothing.
bool conflicts(const ShortcutKey& key, const nlohmann::json& hotKeys);

bool conflictsWithSystem(const ShortcutKey& key, const HotKeyReader& readHotKeys);

} // namespace hopsel::system_shortcut_conflict
