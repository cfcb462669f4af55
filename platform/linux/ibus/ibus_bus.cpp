#include "platform/linux/ibus/ibus_bus.h"

#include "platform/linux/ibus/ibus_address.h"

#include <QDBusPendingCallWatcher>
#include <climits>

namespace hopsel {

namespace {

constexpr const char* service = "org.freedesktop.IBus";
constexpr const char* path = "/org/freedesktop/IBus";
constexpr const char* interface = service;
constexpr int forEver = INT_MAX; // ms; the end of the connection ends every wait

QDBusMessage callToBus(const char* method) {
    return QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                          "org.freedesktop.DBus", method);
}

} // namespace

void IbusBus::open(const QString& address) {
    close();
    if (!ibus_address::acceptsClients(address)) return;
    static int count = 0;
    connection_ = QDBusConnection::connectToPeer(address, "hopsel-ibus-" + QString::number(++count));
    if (!connection_.isConnected()) return close();
    signals_ = std::make_unique<IbusSignals>();
    connection_.connect(QString(), "/org/freedesktop/DBus/Local", "org.freedesktop.DBus.Local",
                        "Disconnected", signals_.get(), SIGNAL(disconnected()));
    QObject::connect(signals_.get(), &IbusSignals::disconnected, &context_, [this] { lose(); });
    send(callToBus("Hello"), [this](const QDBusMessage& reply) {
        if (reply.type() != QDBusMessage::ReplyMessage) return lose();
        watchSignals();
        callbacks_.onReady();
    });
}

void IbusBus::watchSignals() {
    connection_.connect(QString(), path, interface, "GlobalEngineChanged", signals_.get(),
                        SIGNAL(engineChanged(QString)));
    connection_.connect(QString(), path, interface, "RegistryChanged", signals_.get(),
                        SIGNAL(registryChanged()));
    QObject::connect(signals_.get(), &IbusSignals::engineChanged, &context_, callbacks_.onEngineChanged);
    QObject::connect(signals_.get(), &IbusSignals::registryChanged, &context_, callbacks_.onRegistryChanged);
    // For a bus the library would ask for them itself.
    auto match = callToBus("AddMatch");
    match << QStringLiteral("type='signal',interface='org.freedesktop.IBus',path='/org/freedesktop/IBus'");
    connection_.send(match);
}

void IbusBus::close() {
    ++openCount_;
    signals_.reset();
    const QString name = connection_.name();
    if (name.isEmpty()) return;
    connection_ = QDBusConnection(QString());
    QDBusConnection::disconnectFromPeer(name);
}

void IbusBus::lose() {
    if (!isOpen()) return;
    close();
    callbacks_.onLost();
}

void IbusBus::call(const char* method, const QVariantList& arguments, Answer onAnswer) {
    auto message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    send(message, std::move(onAnswer));
}

void IbusBus::readProperty(const char* name, Answer onAnswer) {
    auto message = QDBusMessage::createMethodCall(service, path, "org.freedesktop.DBus.Properties", "Get");
    message << QString::fromLatin1(interface) << QString::fromLatin1(name);
    send(message, std::move(onAnswer));
}

void IbusBus::send(const QDBusMessage& message, Answer onAnswer) {
    auto* call = new QDBusPendingCallWatcher(connection_.asyncCall(message, forEver), &context_);
    QObject::connect(
        call, &QDBusPendingCallWatcher::finished, &context_,
        [this, onAnswer = std::move(onAnswer), count = openCount_](QDBusPendingCallWatcher* finished) {
            finished->deleteLater();
            if (count == openCount_) onAnswer(finished->reply());
        });
}

} // namespace hopsel
