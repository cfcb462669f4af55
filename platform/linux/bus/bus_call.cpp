#include "platform/linux/bus/bus_call.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>

namespace hopsel::bus_call {

QDBusMessage method(const Object& object, const QString& interface, const QString& name,
                    const QVariantList& arguments) {
    QDBusMessage call = QDBusMessage::createMethodCall(object.service, object.path, interface, name);
    call.setAutoStartService(false);
    call.setArguments(arguments);
    return call;
}

QDBusMessage toBus(const QString& name, const QVariantList& arguments) {
    const QString bus = QStringLiteral("org.freedesktop.DBus");
    return method({bus, QStringLiteral("/org/freedesktop/DBus")}, bus, name, arguments);
}

bool isReply(const QDBusMessage& message, const char* signature) {
    return message.type() == QDBusMessage::ReplyMessage && message.signature() == QLatin1String(signature);
}

std::optional<QString> textIn(const QDBusMessage& reply) {
    if (!isReply(reply, "s")) return std::nullopt;
    return reply.arguments().constFirst().toString();
}

std::optional<bool> flagIn(const QDBusMessage& reply) {
    if (!isReply(reply, "b")) return std::nullopt;
    return reply.arguments().constFirst().toBool();
}

std::optional<uint> numberIn(const QDBusMessage& reply) {
    if (!isReply(reply, "u")) return std::nullopt;
    return reply.arguments().constFirst().toUInt();
}

QString pathIn(const QDBusMessage& reply) {
    if (!isReply(reply, "o")) return {};
    return qvariant_cast<QDBusObjectPath>(reply.arguments().constFirst()).path();
}

QVariant variantIn(const QDBusMessage& reply) {
    if (!isReply(reply, "v")) return {};
    return qvariant_cast<QDBusVariant>(reply.arguments().constFirst()).variant();
}

QVariantMap propertiesIn(const QVariant& value) {
    if (value.userType() != qMetaTypeId<QDBusArgument>()) return {};
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != u"a{sv}") return {};
    return qdbus_cast<QVariantMap>(argument);
}

} // namespace hopsel::bus_call
