// Calls on a message bus, and their answers read with suspicion: the name may belong to anyone. Stateless.
#pragma once

#include <QDBusMessage>
#include <QString>
#include <QVariant>
#include <optional>

namespace hopsel::bus_call {

struct Object {
    QString service;
    QString path;

    bool operator==(const Object&) const = default;
};

/// A call that does not start the service.
QDBusMessage method(const Object& object, const QString& interface, const QString& name,
                    const QVariantList& arguments = {});
/// A call to the bus itself.
QDBusMessage toBus(const QString& name, const QVariantList& arguments = {});

/// A reply and no error, with this signature and no other.
bool isReply(const QDBusMessage& message, const char* signature);

std::optional<QString> textIn(const QDBusMessage& reply);
std::optional<bool> flagIn(const QDBusMessage& reply);
std::optional<uint> numberIn(const QDBusMessage& reply);
/// Empty if it is none.
QString pathIn(const QDBusMessage& reply);
/// What is in the one variant of the reply; invalid if that is not what it has.
QVariant variantIn(const QDBusMessage& reply);
/// Names and values, as properties come; empty for anything else.
QVariantMap propertiesIn(const QVariant& value);

} // namespace hopsel::bus_call
