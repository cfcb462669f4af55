#include "platform/linux/bus/bus_name_owners.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace hopsel {

BusNameOwners::BusNameOwners(const QDBusConnection& bus, const QStringList& names) : bus_(bus) {
    if (!bus_.isConnected()) return;
    // The watch comes before the questions, so that no change falls between them.
    watcher_.setConnection(bus_);
    watcher_.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    QObject::connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, &watcher_,
                     [this](const QString& name, const QString&, const QString& owner) {
                         owned_[name] = !owner.isEmpty();
                     });
    for (const QString& name : names) {
        watcher_.addWatchedService(name);
        ask(name);
    }
}

void BusNameOwners::ask(const QString& name) {
    auto message = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"));
    message.setAutoStartService(false);
    message << name;
    auto* call = new QDBusPendingCallWatcher(bus_.asyncCall(message), &watcher_);
    QObject::connect(call, &QDBusPendingCallWatcher::finished, &watcher_,
                     [this, name](QDBusPendingCallWatcher* finished) {
                         const QDBusPendingReply<bool> reply = *finished;
                         finished->deleteLater();
                         auto& owned = owned_[name];
                         // A change that was told of is newer than any answer, or the same.
                         if (!owned) owned = !reply.isError() && reply.value();
                     });
}

bool BusNameOwners::hasOwner(const QString& name) const {
    const auto found = owned_.find(name);
    return found != owned_.end() && found->second.value_or(false) && bus_.isConnected();
}

} // namespace hopsel
