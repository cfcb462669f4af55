#include "platform/linux/wayland/wayland_display.h"

#include <QString>
#include <algorithm>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace hopsel::wayland_display {

bool isThere() {
    QString name = qEnvironmentVariable("WAYLAND_DISPLAY");
    if (name.isEmpty()) name = "wayland-0";
    if (!name.startsWith('/')) name.prepend(qEnvironmentVariable("XDG_RUNTIME_DIR") + '/');
    const std::string path = name.toStdString();
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) return false;
    std::copy(path.begin(), path.end(), static_cast<char*>(address.sun_path));
    const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (descriptor < 0) return false;
    const bool listens =
        connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(descriptor);
    return listens;
}

} // namespace hopsel::wayland_display
