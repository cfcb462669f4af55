// Where the desktop keeps configuration and shared data, by the XDG base directories. Read from the
// environment at each call; relative paths there are ignored.
#pragma once

#include <filesystem>
#include <vector>

namespace hopsel {

/// $XDG_CONFIG_HOME, else ".config" in the home directory.
std::filesystem::path xdgConfigHome();

/// $XDG_DATA_HOME (else ".local/share" in the home directory), then $XDG_DATA_DIRS (else /usr/local/share and
/// /usr/share): in the order in which the first find counts.
std::vector<std::filesystem::path> xdgDataFolders();

} // namespace hopsel
