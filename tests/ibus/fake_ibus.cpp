#include "ibus/fake_ibus.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusVariant>

Q_DECLARE_METATYPE(hopsel::test::FakeEngine)

namespace hopsel::test {

static void describe(QDBusArgument& argument, const void* value) {
    const auto& engine = *static_cast<const FakeEngine*>(value);
    const QString none;
    argument.beginStructure();
    argument << QString("IBusEngineDesc") << QVariantMap() << engine.id << engine.name << none
             << engine.language << none << none << none << engine.layout << 1U << none << none << none
             << engine.variant << none << none << none << none;
    argument.endStructure();
}

FakeIbus::FakeIbus()
    : connection_(QDBusConnection::connectToBus(QString::fromStdString(bus_.address()), "fake ibus")) {
    QDBusMetaType::registerMarshallOperators(QMetaType::fromType<FakeEngine>(), describe,
                                             [](const QDBusArgument&, void*) {});
    connection_.registerVirtualObject("/org/freedesktop/IBus", this);
    connection_.registerService("org.freedesktop.IBus");
    setenv("IBUS_ADDRESS", bus_.address().c_str(), 1);
}

FakeIbus::~FakeIbus() {
    unsetenv("IBUS_ADDRESS");
    QDBusConnection::disconnectFromBus("fake ibus");
}

bool FakeIbus::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    ++callCount;
    const auto reply = replies.find(message.member());
    if (reply == replies.end()) return true;
    const QDBusMessage answer = reply->second(message);
    if (answer.type() != QDBusMessage::InvalidMessage) connection.send(answer);
    return true;
}

FakeIbus::Reply FakeIbus::returning(const QVariant& value) {
    return [value](const QDBusMessage& call) { return call.createReply(value); };
}

FakeIbus::Reply FakeIbus::failing(const QString& name, const QString& message) {
    return [name, message](const QDBusMessage& call) { return call.createErrorReply(name, message); };
}

FakeIbus::Reply FakeIbus::obeying() {
    return [this](const QDBusMessage& call) {
        auto signal = QDBusMessage::createSignal("/org/freedesktop/IBus", "org.freedesktop.IBus",
                                                 "GlobalEngineChanged");
        signal.setArguments(call.arguments());
        connection_.send(signal);
        return call.createReply();
    };
}

QVariant FakeIbus::variant(const FakeEngine& engine) {
    return QVariant::fromValue(QDBusVariant(QVariant::fromValue(engine)));
}

QVariantList FakeIbus::variants(const QList<FakeEngine>& engines) {
    QVariantList list;
    for (const FakeEngine& engine : engines) list << QVariant::fromValue(engine);
    return list;
}

void FakeIbus::behave(const QList<FakeEngine>& engines) {
    replies["Get"] = returning(variant(engines.constFirst()));
    replies["GetEnginesByNames"] = returning(variants(engines));
    replies["SetGlobalEngine"] = obeying();
}

} // namespace hopsel::test
