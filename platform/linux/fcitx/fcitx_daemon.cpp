#include "platform/linux/fcitx/fcitx_daemon.h"

#include <QDBusPendingCallWatcher>
#include <utility>

namespace hopsel {

namespace {

constexpr auto serviceName = "org.fcitx.Fcitx5";
constexpr int replyTimeout = 5000; // milliseconds

} // namespace

FcitxDaemon::FcitxDaemon(const QDBusConnection& bus, std::function<void()> onOwnerChanged)
    : bus_(bus),
      onOwnerChanged_(std::move(onOwnerChanged)),
      watcher_(serviceName, bus_, QDBusServiceWatcher::WatchForOwnerChange) {
    QObject::connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, &calls_,
                     [this](const QString&, const QString&, const QString& owner) { setOwner(owner); });
    auto question = QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                   "org.freedesktop.DBus", "GetNameOwner");
    question << QString(serviceName);
    send(question, calls_, [this](const QDBusMessage& reply) {
        // An error says that there is none, and a change that was told meanwhile is newer.
        if (reply.type() == QDBusMessage::ReplyMessage && !isOwnerKnown_)
            setOwner(reply.arguments().value(0).toString());
    });
}

void FcitxDaemon::checkBus() {
    if (!bus_.isConnected()) setOwner(QString());
}

void FcitxDaemon::call(const QString& method, const QVariantList& arguments, const QObject& context,
                       ReplyHandler onReply) {
    auto message =
        QDBusMessage::createMethodCall(owner_, "/controller", "org.fcitx.Fcitx.Controller1", method);
    message.setArguments(arguments);
    send(message, context, std::move(onReply));
}

void FcitxDaemon::send(QDBusMessage message, const QObject& context, ReplyHandler onReply) {
    message.setAutoStartService(false);
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(message, replyTimeout), &calls_);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, &QObject::deleteLater);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &context,
                     [onReply = std::move(onReply)](const QDBusPendingCallWatcher* finished) {
                         onReply(finished->reply());
                     });
}

void FcitxDaemon::setOwner(const QString& owner) {
    isOwnerKnown_ = true;
    if (owner == owner_) return;
    owner_ = owner;
    onOwnerChanged_();
}

} // namespace hopsel
