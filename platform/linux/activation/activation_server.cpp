#include "platform/linux/activation/activation_server.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QLocalSocket>
#include <unistd.h>

namespace hopsel {

namespace {

constexpr const char* objectPath = "/app/hopsel/Hopsel";
constexpr const char* interface = "org.freedesktop.Application";
constexpr int patience = 1000; // milliseconds
constexpr qint64 longestToken = 256;

/// Letters and digits of the display's name, without its screen: ":1.0" is "1".
QString displayWord() {
    QString display = qEnvironmentVariable("DISPLAY");
    if (const qsizetype screen = display.lastIndexOf('.'); screen > display.lastIndexOf(':'))
        display.truncate(screen);
    QString word;
    for (const QChar letter : display)
        if (letter.isLetterOrNumber() && letter.unicode() < 128) word += letter;
    return word;
}

QString busName() { return "app.hopsel.Hopsel.display" + displayWord(); }

QString socketPath() {
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const QString name = "hopsel-" + displayWord() + ".socket";
    return folder.isEmpty() ? "/tmp/hopsel-" + QString::number(getuid()) + "-" + name : folder + "/" + name;
}

/// What the desktop gave this process to take the focus with: Wayland's name for it, or X11's.
QString startToken() {
    const QString token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN");
    return token.isEmpty() ? qEnvironmentVariable("DESKTOP_STARTUP_ID") : token;
}

} // namespace

ActivationServer::ActivationServer(const QDBusConnection& bus) : bus_(bus) {
    if (bus_.isConnected()) {
        bus_.registerObject(objectPath, this, QDBusConnection::ExportAllInvokables);
        bus_.registerService(busName());
    }
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    // Whatever lies there is a dead copy's: the lock says that we are the only one.
    QLocalServer::removeServer(socketPath());
    server_.listen(socketPath());
    connect(&server_, &QLocalServer::newConnection, this, [this] { takeConnection(); });
}

ActivationServer::~ActivationServer() {
    if (!bus_.isConnected()) return;
    bus_.unregisterService(busName());
    bus_.unregisterObject(objectPath);
}

void ActivationServer::Activate(const QVariantMap& platformData) {
    QString token = platformData.value("activation-token").toString();
    if (token.isEmpty()) token = platformData.value("desktop-startup-id").toString();
    if (onActivate) onActivate(token.left(longestToken));
}

void ActivationServer::takeConnection() {
    while (QLocalSocket* socket = server_.nextPendingConnection()) {
        socket->setReadBufferSize(longestToken);
        connect(socket, &QLocalSocket::disconnected, this, [this, socket] {
            const QString token = QString::fromUtf8(socket->readAll());
            socket->deleteLater();
            if (onActivate) onActivate(token);
        });
    }
}

bool activateRunningCopy(const QDBusConnection& bus) {
    if (bus.isConnected()) {
        QDBusMessage call = QDBusMessage::createMethodCall(busName(), objectPath, interface, "Activate");
        call.setAutoStartService(false);
        call << QVariantMap{{"desktop-startup-id", startToken()}, {"activation-token", startToken()}};
        if (bus.call(call, QDBus::Block, patience).type() == QDBusMessage::ReplyMessage) return true;
    }
    QLocalSocket socket;
    socket.connectToServer(socketPath());
    if (!socket.waitForConnected(patience)) return false;
    socket.write(startToken().toUtf8());
    socket.disconnectFromServer();
    return socket.state() == QLocalSocket::UnconnectedState || socket.waitForDisconnected(patience);
}

} // namespace hopsel
