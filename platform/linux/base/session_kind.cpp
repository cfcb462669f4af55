#include "platform/linux/base/session_kind.h"

#include <QString>
#include <QStringList>

namespace hopsel::session_kind {

bool isWayland() {
    return qEnvironmentVariable("XDG_SESSION_TYPE") == "wayland" ||
           qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
}

bool isGnomeWayland() {
    return isWayland() &&
           qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(':').contains("GNOME", Qt::CaseInsensitive);
}

bool hasDisplay() { return !qEnvironmentVariableIsEmpty("DISPLAY"); }

} // namespace hopsel::session_kind
