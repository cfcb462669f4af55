#include "platform/linux/bus/bus_greeting.h"

#include <QTimer>
#include <unistd.h>

namespace hopsel {

namespace {

const QString pathKind = QStringLiteral("unix:path=");
const QString abstractKind = QStringLiteral("unix:abstract=");

} // namespace

BusGreeting::BusGreeting(const QString& address, std::function<void(bool)> onAnswer)
    : onAnswer_(std::move(onAnswer)) {
    const bool isPath = address.startsWith(pathKind);
    if (!isPath) socket_.setSocketOptions(QLocalSocket::AbstractNamespaceOption);
    const auto name = address.mid(isPath ? pathKind.size() : abstractKind.size()).toUtf8();
    // The bus takes the user from the socket; what is said here need only begin like a client's introduction.
    connect(&socket_, &QLocalSocket::connected, this, [this] {
        socket_.write(QByteArray("\0AUTH EXTERNAL ", 15) + QByteArray::number(getuid()).toHex() + "\r\n");
    });
    connect(&socket_, &QLocalSocket::readyRead, this, [this] {
        constexpr qint64 longest = 16;
        if (socket_.bytesAvailable() >= 3) finish(socket_.read(longest).startsWith("OK "));
    });
    connect(&socket_, &QLocalSocket::disconnected, this, [this] { finish(false); });
    connect(&socket_, &QLocalSocket::errorOccurred, this, [this] { finish(false); });
    // Not at once: it may fail at once.
    QTimer::singleShot(0, this, [this, place = QString::fromUtf8(QByteArray::fromPercentEncoding(name))] {
        socket_.connectToServer(place);
    });
}

void BusGreeting::finish(bool isGreeted) {
    // The rest is this socket's end, of which nobody wants to hear; and it must not end inside its own
    // signal.
    if (const auto tell = std::exchange(onAnswer_, nullptr))
        QTimer::singleShot(0, this, [tell, isGreeted] { tell(isGreeted); });
}

QString BusGreeting::localAddress(const QString& addresses) {
    for (const QString& address : addresses.split(';')) {
        const QString place = address.section(',', 0, 0);
        if (place.startsWith(pathKind + '/') || place.startsWith(abstractKind)) return place;
    }
    return {};
}

} // namespace hopsel
