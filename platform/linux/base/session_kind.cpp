#include "platform/linux/base/session_kind.h"

#include <QString>
#include <QStringList>

namespace hopsel::session_kind {

bool isWayland() {
    return qEnvironmentVariable("XDG_SESSION_TYPE") == "wayland" ||
           qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
}

namespace {

bool isDesktop(const char* name) {
    return qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(':').contains(name, Qt::CaseInsensitive);
}

} // namespace

bool isGnome() { return isDesktop("GNOME"); }

bool isGnomeWayland() { return isWayland() && isGnome(); }

bool isKde() { return isDesktop("KDE"); }

bool hasDisplay() { return !qEnvironmentVariableIsEmpty("DISPLAY"); }

} // namespace hopsel::session_kind
