#include "platform/linux/activation/activation_server.h"

#include "platform/linux/bus/bus_address.h"
#include "platform/linux/bus/bus_call.h"

#include <QEventLoop>
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

ActivationServer::ActivationServer(std::shared_ptr<BusLink> bus) : bus_(std::move(bus)) {
    connect(bus_.get(), &BusLink::connected, this, [this] { appear(); });
    if (bus_->isConnected()) appear();
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    // Whatever lies there is a dead copy's: the lock says that we are the only one.
    QLocalServer::removeServer(socketPath());
    server_.listen(socketPath());
    connect(&server_, &QLocalServer::newConnection, this, [this] { takeConnection(); });
}

ActivationServer::~ActivationServer() {
    if (!bus_->isConnected()) return;
    bus_->send(bus_call::toBus("ReleaseName", {busName()}));
    bus_->connection().unregisterObject(objectPath);
}

void ActivationServer::appear() {
    constexpr uint doNotQueue = 4;
    bus_->connection().registerVirtualObject(objectPath, this);
    bus_->send(bus_call::toBus("RequestName", {busName(), doNotQueue}));
}

QString ActivationServer::introspect(const QString&) const {
    return R"(<interface name="org.freedesktop.Application"><method name="Activate">)"
           R"(<arg type="a{sv}" name="platform-data" direction="in"/></method></interface>)";
}

// A whole message: for typed arguments the library would read whatever was sent as if it were of that type.
bool ActivationServer::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    if (message.interface() != interface || message.member() != u"Activate" ||
        message.signature() != u"a{sv}")
        return false;
    const QVariantMap platformData = bus_call::propertiesIn(message.arguments().constFirst());
    QString token = platformData.value("activation-token").toString();
    if (token.isEmpty()) token = platformData.value("desktop-startup-id").toString();
    connection.send(message.createReply());
    if (onActivate) onActivate(token.left(longestToken));
    return true;
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

namespace {

bool activateAtSocket() {
    QLocalSocket socket;
    socket.connectToServer(socketPath());
    if (!socket.waitForConnected(patience)) return false;
    socket.write(startToken().toUtf8());
    socket.disconnectFromServer();
    return socket.state() == QLocalSocket::UnconnectedState || socket.waitForDisconnected(patience);
}

bool activateOnBus() {
    BusLink bus(bus_address::session, BusLink::Return::whenAsked);
    QEventLoop loop;
    bool isDone = false;
    QObject::connect(&bus, &BusLink::connected, &loop, [&] {
        const QVariantMap data{{"desktop-startup-id", startToken()}, {"activation-token", startToken()}};
        bus.call(bus_call::method({busName(), objectPath}, interface, "Activate", {data}), &loop,
                 [&](const QDBusMessage& reply) {
                     isDone = reply.type() == QDBusMessage::ReplyMessage;
                     loop.quit();
                 });
    });
    QTimer::singleShot(patience, &loop, &QEventLoop::quit);
    bus.retry();
    if (bus.isOpen()) loop.exec();
    return isDone;
}

} // namespace

bool activateRunningCopy() { return activateAtSocket() || activateOnBus(); }

} // namespace hopsel
