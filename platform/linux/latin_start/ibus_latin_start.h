// Which engines of IBus give Latin letters when they are selected, until their own key is pressed.
//
// A table of those that have such a mode and tell in their settings what they begin with. Others begin in
// their own script as they are delivered (chewing, kkc, skk, rime, unikey), or have nothing else. Pure: what
// is set is handed in.
#pragma once

#include "core/platform/input_source.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace hopsel {

struct IbusEngineSettings {
    /// The value of a key in a schema, as GVariant prints it; absent if the schema is not installed.
    std::function<std::optional<std::string>(const char* schema, const char* key)> stored;
    /// Mozc's file for IBus; empty if there is none.
    std::function<std::string()> mozcFile;
};

/// `engine` as IBus names it: "hangul", "mozc-jp".
SourceLimit ibusLatinStart(std::string_view engine, const IbusEngineSettings& settings);

/// The setting that makes an engine begin in its own script, as GVariant prints the value.
struct IbusStartSetting {
    const char* schema;
    const char* key;
    std::string value;
};
/// Absent for engines that have no such setting in the storage.
std::optional<IbusStartSetting> ibusStartSetting(std::string_view engine);

/// Where the settings of these engines are kept, as a path in their storage.
bool isPathOfIbusEngines(std::string_view path);

} // namespace hopsel
