// Asking something of a service on a message bus: without waiting, and without starting the service.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QVariant>
#include <functional>

namespace hopsel::bus_call {

struct Object {
    QString service;
    QString path;

    bool operator==(const Object&) const = default;
};

QDBusMessage method(const Object& object, const QString& interface, const QString& name,
                    const QVariantList& arguments = {});

/// `handle` gets the reply's first argument, of whatever type it is, or an invalid value when there is none
/// within two seconds. It is not called once `context` is gone.
void ask(const QDBusConnection& bus, const QDBusMessage& call, QObject* context,
         std::function<void(const QVariant& answer)> handle);

} // namespace hopsel::bus_call
