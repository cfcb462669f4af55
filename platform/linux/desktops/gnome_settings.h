// GNOME's settings for input sources, as they are stored now.
//
// A member of the framework that reads them.
#pragma once

#include "platform/linux/dconf/stored_settings.h"

#include <QString>
#include <optional>
#include <utility>
#include <vector>

namespace hopsel {

class GnomeSettings {
  public:
    /// A source's type, "xkb" or "ibus", and its name there: "kr+kr104", "hangul".
    using Source = std::pair<QString, QString>;
    struct Values {
        std::vector<Source> sources;
        std::vector<Source> recent; ///< the one used last first
        bool isPerWindow = false;   ///< each window has its own current source
        friend bool operator==(const Values&, const Values&) = default;
    };

    /// Absent if GNOME's settings are not installed.
    std::optional<Values> read();

    static constexpr const char* path = "/org/gnome/desktop/input-sources/";

  private:
    std::vector<Source> list(const char* key);

    StoredSettings settings_{"org.gnome.desktop.input-sources"};
};

} // namespace hopsel
