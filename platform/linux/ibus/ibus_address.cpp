#include "platform/linux/ibus/ibus_address.h"

#include "platform/linux/bus/bus_address.h"
#include "platform/posix/posix_file_storage.h"

#include <QDBusConnection>
#include <QStandardPaths>
#include <algorithm>
#include <cstring>
#include <system_error>

namespace hopsel::ibus_address {

namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t largestFile = 4096;
constexpr qsizetype longestAddress = 512;

/// The first of the alternatives, if it is a local socket.
std::optional<QString> checked(const QByteArray& addresses) {
    const QByteArray address = addresses.split(';').constFirst();
    const auto isPlain = [](char c) { return c > ' ' && c < 0x7F; };
    if (address.size() > longestAddress || !std::all_of(address.begin(), address.end(), isPlain) ||
        bus_address::local(QString::fromLatin1(address)).isEmpty())
        return std::nullopt;
    return QString::fromLatin1(address);
}

QString displayPart() {
    // The daemon of a Wayland session names its file after the compositor.
    if (const QString wayland = qEnvironmentVariable("WAYLAND_DISPLAY"); !wayland.isEmpty())
        return "unix-" + wayland;
    const QString display = qEnvironmentVariable("DISPLAY", ":0");
    const qsizetype colon = display.indexOf(':');
    const QString host = colon > 0 ? display.left(colon) : "unix";
    return host + '-' + display.mid(colon + 1).section('.', 0, 0);
}

fs::path file() {
    const QString given = qEnvironmentVariable("IBUS_ADDRESS_FILE");
    if (!given.isEmpty()) return given.toStdString();
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    const QString name = QDBusConnection::localMachineId() + '-' + displayPart();
    return (folder + "/ibus/bus/" + name).toStdString();
}

} // namespace

std::optional<QString> current() {
    const QByteArray given = qgetenv("IBUS_ADDRESS");
    if (!given.isEmpty()) return checked(given);
    const fs::path path = file();
    std::error_code error;
    if (!fs::is_regular_file(path, error) || fs::file_size(path, error) > largestFile || error)
        return std::nullopt;
    try {
        return inFile(QByteArray::fromStdString(PosixFileStorage({}).read(path)));
    } catch (const std::system_error&) {
        return std::nullopt;
    }
}

std::optional<QString> inFile(const QByteArray& text) {
    constexpr auto key = "IBUS_ADDRESS=";
    QList<QByteArray> lines = text.split('\n');
    lines.removeLast(); // what has no end of line is still being written
    for (const QByteArray& line : lines) {
        if (line.startsWith(key)) return checked(line.mid(static_cast<qsizetype>(std::strlen(key))));
    }
    return std::nullopt;
}

} // namespace hopsel::ibus_address
