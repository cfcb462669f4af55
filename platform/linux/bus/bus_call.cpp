#include "platform/linux/bus/bus_call.h"

#include <QDBusPendingCallWatcher>

namespace hopsel::bus_call {

QDBusMessage method(const Object& object, const QString& interface, const QString& name,
                    const QVariantList& arguments) {
    QDBusMessage call = QDBusMessage::createMethodCall(object.service, object.path, interface, name);
    call.setAutoStartService(false);
    call.setArguments(arguments);
    return call;
}

void ask(const QDBusConnection& bus, const QDBusMessage& call, QObject* context,
         std::function<void(const QVariant&)> handle) {
    constexpr int patience = 2000;
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call, patience), context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context,
                     [answered = std::move(handle)](QDBusPendingCallWatcher* finished) {
                         finished->deleteLater();
                         const QDBusMessage reply = finished->reply();
                         answered(reply.type() == QDBusMessage::ReplyMessage ? reply.arguments().value(0)
                                                                             : QVariant());
                     });
}

} // namespace hopsel::bus_call
