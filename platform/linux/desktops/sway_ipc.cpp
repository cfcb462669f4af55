#include "platform/linux/desktops/sway_ipc.h"

#include <cstring>

namespace hopsel {

namespace {

const QByteArray magic = QByteArrayLiteral("i3-ipc");
constexpr qint64 headerSize = 14;

} // namespace

SwayIpc::SwayIpc() {
    socket_.setReadBufferSize(headerSize + maxPayload);
    QObject::connect(&socket_, &QLocalSocket::connected, &socket_, [this] { onOpened(); });
    QObject::connect(&socket_, &QLocalSocket::disconnected, &socket_, [this] { onClosed(); });
    QObject::connect(&socket_, &QLocalSocket::readyRead, &socket_, [this] { read(); });
}

// The socket would tell of its own end, to whoever is ending too.
SwayIpc::~SwayIpc() { QObject::disconnect(&socket_, nullptr, &socket_, nullptr); }

void SwayIpc::open(const QString& path) {
    if (socket_.state() == QLocalSocket::UnconnectedState) socket_.connectToServer(path);
}

void SwayIpc::close() { socket_.abort(); }

void SwayIpc::send(quint32 type, const QByteArray& payload) {
    const auto length = static_cast<quint32>(payload.size());
    QByteArray message = magic;
    message.append(reinterpret_cast<const char*>(&length), sizeof length);
    message.append(reinterpret_cast<const char*>(&type), sizeof type);
    socket_.write(message + payload);
}

void SwayIpc::read() {
    while (isOpen() && socket_.bytesAvailable() >= headerSize) {
        const QByteArray header = socket_.peek(headerSize);
        quint32 length = 0;
        quint32 type = 0;
        std::memcpy(&length, header.constData() + magic.size(), sizeof length);
        std::memcpy(&type, header.constData() + magic.size() + sizeof length, sizeof type);
        if (!header.startsWith(magic) || length > maxPayload) {
            close();
            return;
        }
        if (socket_.bytesAvailable() < headerSize + length) return;
        socket_.skip(headerSize);
        onMessage(type, socket_.read(length));
    }
}

} // namespace hopsel
