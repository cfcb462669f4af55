#include "session/private_home.h"

#include <cstdlib>
#include <utility>

namespace hopsel::session {

PrivateHome::PrivateHome() {
    for (const auto& [variable, name] : {std::pair{"HOME", "home"},
                                         {"XDG_CONFIG_HOME", "config"},
                                         {"XDG_CACHE_HOME", "cache"},
                                         {"XDG_DATA_HOME", "data"},
                                         {"XDG_RUNTIME_DIR", "run"}}) {
        const std::filesystem::path path = folder_.path() / name;
        std::filesystem::create_directories(path);
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        setenv(variable, path.c_str(), 1);
    }
    for (const char* variable :
         {"IBUS_ADDRESS", "IBUS_ADDRESS_FILE", "WAYLAND_DISPLAY", "XDG_SESSION_TYPE", "GSETTINGS_BACKEND"})
        unsetenv(variable);
}

} // namespace hopsel::session
