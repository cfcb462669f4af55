#include "platform/linux/activation/activation_server.h"

#include "platform/linux/bus/bus_address.h"
#include "platform/linux/bus/bus_call.h"

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QLocalSocket>
#include <QPointer>
#include <sys/socket.h>
#include <unistd.h>

namespace hopsel {

namespace {

constexpr const char* objectPath = "/app/hopsel/Hopsel";
constexpr const char* interface = "org.freedesktop.Application";
constexpr int patience = 1000;         // milliseconds
constexpr int patienceForReply = 4000; // milliseconds; a switch has its own, shorter deadline
constexpr qint64 longestToken = 256;
constexpr qint64 longestRequest = 4096;
constexpr qint64 longestReply = 1 << 20;

/// Letters and digits of the display's name, without its screen: ":1.0" is "1". Wayland's where there is no
/// other.
QString displayWord() {
    QString display = qEnvironmentVariable("DISPLAY", qEnvironmentVariable("WAYLAND_DISPLAY"));
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

constexpr const char* asked = "hopselAsked";

/// The file's rights say so already, but for a folder that all share.
bool isOfThisUser(const QLocalSocket& socket) {
    ucred peer{};
    socklen_t size = sizeof peer;
    const auto descriptor = static_cast<int>(socket.socketDescriptor());
    return getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == getuid();
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
        socket->setReadBufferSize(longestRequest);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] { read(*socket); });
        connect(socket, &QLocalSocket::disconnected, this, [this, socket] {
            const QByteArray token = socket->peek(longestToken);
            socket->deleteLater();
            if (token.startsWith('\0') || socket->property(asked).toBool()) return;
            if (onActivate) onActivate(QString::fromUtf8(token));
        });
        read(*socket); // what came before we listened
    }
}

void ActivationServer::read(QLocalSocket& socket) {
    if (socket.property(asked).toBool()) return; // one request, one answer
    const QByteArray start = socket.peek(longestRequest);
    if (!start.startsWith('\0')) return; // a token, complete when the other side leaves
    const qsizetype end = start.indexOf('\n');
    if (end < 0 && start.size() < longestRequest) return;
    socket.setProperty(asked, true);
    if (end < 0 || !onCommand || !isOfThisUser(socket)) return socket.abort();
    socket.read(end + 1);
    const QPointer<QLocalSocket> other(&socket);
    onCommand(start.mid(1, end - 1).toStdString(), [other](const std::string& reply) {
        if (!other) return;
        other->write(reply.data(), static_cast<qint64>(reply.size()));
        other->flush();
        other->disconnectFromServer();
    });
}

CopyAsked askRunningCopy(const std::string& request, std::string& reply) {
    QLocalSocket socket;
    socket.connectToServer(socketPath());
    if (!socket.waitForConnected(patience)) return CopyAsked::notRunning;
    socket.write(QByteArray(1, '\0') + QByteArray::fromStdString(request) + '\n');
    const QDeadlineTimer deadline(patienceForReply);
    while (socket.state() == QLocalSocket::ConnectedState && !deadline.hasExpired() &&
           socket.bytesAvailable() <= longestReply)
        socket.waitForReadyRead(static_cast<int>(deadline.remainingTime()));
    reply = socket.readAll().toStdString();
    return !reply.empty() && socket.state() != QLocalSocket::ConnectedState ? CopyAsked::answered
                                                                            : CopyAsked::noAnswer;
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
