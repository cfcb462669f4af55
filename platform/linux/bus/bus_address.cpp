#include "platform/linux/bus/bus_address.h"

#include <QByteArray>
#include <QStringList>
#include <cstddef>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace hopsel::bus_address {

namespace {

const QString pathKind = QStringLiteral("unix:path=");
const QString abstractKind = QStringLiteral("unix:abstract=");

/// One byte goes to the mark of an abstract name, or to the end of a path.
constexpr qsizetype longestName = sizeof(sockaddr_un::sun_path) - 1;

QByteArray nameIn(const QString& place) {
    return QByteArray::fromPercentEncoding(place.section(u'=', 1).toUtf8());
}

QString ofUser() {
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return folder.isEmpty() ? QString() : pathKind + folder + "/bus";
}

/// The keys of one address in an order of our own: "unix:guid=1,path=/x" is "unix:path=/x".
QString placeIn(const QString& address) {
    if (!address.startsWith(u"unix:")) return {};
    for (const QString& field : address.mid(5).split(u',')) {
        if (field == u"runtime=yes") return ofUser();
        const QString place = "unix:" + field;
        if (place.startsWith(pathKind + '/') || place.startsWith(abstractKind)) return place;
    }
    return {};
}

} // namespace

QString session() {
    const QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    return address.isEmpty() ? ofUser() : address;
}

QString system() {
    return qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/var/run/dbus/system_bus_socket");
}

QString local(const QString& addresses) {
    for (const QString& address : addresses.split(u';')) {
        const QString place = placeIn(address);
        const qsizetype length = place.isEmpty() ? 0 : nameIn(place).size();
        if (length > 0 && length <= longestName) return place;
    }
    return {};
}

std::filesystem::path socketFile(const QString& localAddress) {
    return localAddress.startsWith(pathKind) ? nameIn(localAddress).toStdString() : std::string();
}

bool acceptsClients(const QString& localAddress) {
    const QByteArray name = nameIn(localAddress);
    if (name.isEmpty() || name.size() > longestName) return false;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    char* path = address.sun_path + (localAddress.startsWith(abstractKind) ? 1 : 0);
    std::memcpy(path, name.constData(), static_cast<std::size_t>(name.size()));
    const auto size = offsetof(sockaddr_un, sun_path) + 1 + static_cast<std::size_t>(name.size());
    const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (descriptor < 0) return false;
    const bool isAccepted =
        connect(descriptor, reinterpret_cast<const sockaddr*>(&address), static_cast<socklen_t>(size)) == 0;
    close(descriptor);
    return isAccepted;
}

} // namespace hopsel::bus_address
