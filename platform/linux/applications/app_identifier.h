// Which application an X window belongs to, by what the window says of itself. Pure.
//
// The application writes these properties, so nothing about them is believed: whatever they hold, the result
// is short, valid UTF-8 and free of control characters.
#pragma once

#include <optional>
#include <string>

namespace hopsel {

/// The properties' bytes as they stand; empty where the window has none.
struct AppProperties {
    std::string gtkApplicationID; ///< _GTK_APPLICATION_ID
    std::string kdeDesktopFile;   ///< _KDE_NET_WM_DESKTOP_FILE: a name, or a path that ends in ".desktop"
    std::string windowClass;      ///< WM_CLASS: instance and class, each ended by a NUL
};

/// The first of the names that says that the window shows another computer; else the first of all. Names of
/// applications go before window classes, and the class before the instance.
std::optional<std::string> appIdentifier(const AppProperties& properties);

} // namespace hopsel
