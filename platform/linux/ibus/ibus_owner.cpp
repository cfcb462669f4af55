#include "platform/linux/ibus/ibus_owner.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace hopsel {

namespace {

const QString ibusName = QStringLiteral("org.freedesktop.IBus");
const QString fcitxName = QStringLiteral("org.fcitx.Fcitx5");

} // namespace

IbusOwner::IbusOwner(const QDBusConnection& sessionBus, std::function<void()> onChanged)
    : bus_(sessionBus), onChanged_(std::move(onChanged)) {
    if (!bus_.isConnected()) return;
    // The watch comes before the questions, so that no change falls between them.
    watcher_.setConnection(bus_);
    watcher_.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    watcher_.setWatchedServices({ibusName, fcitxName});
    connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, this, [this](const QString& name) {
        if (name == ibusName) set(false); // what was agreed with the last owner is void
        ask();
    });
    bus_.connect(QString(), "/org/freedesktop/DBus/Local", "org.freedesktop.DBus.Local", "Disconnected", this,
                 SLOT(loseBus()));
    ask();
}

// Told by their processes, since one program may hold the two names with two connections.
void IbusOwner::ask() {
    ++questions_;
    askFor(ibusName, [this](Process ibus) {
        askFor(fcitxName, [this, ibus](Process fcitx) { set(ibus && ibus != fcitx); });
    });
}

void IbusOwner::askFor(const QString& name, std::function<void(Process)> take) {
    auto message = QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                  "org.freedesktop.DBus", "GetConnectionUnixProcessID");
    message << name;
    auto* call = new QDBusPendingCallWatcher(bus_.asyncCall(message), this);
    connect(call, &QDBusPendingCallWatcher::finished, this,
            [this, take = std::move(take), question = questions_](QDBusPendingCallWatcher* finished) {
                const QDBusPendingReply<uint> reply = *finished;
                finished->deleteLater();
                if (question == questions_) take(reply.isValid() ? Process(reply.value()) : std::nullopt);
            });
}

void IbusOwner::loseBus() {
    ++questions_;
    set(false);
}

void IbusOwner::set(bool isThere) {
    if (isThere == isThere_) return;
    isThere_ = isThere;
    onChanged_();
}

} // namespace hopsel
