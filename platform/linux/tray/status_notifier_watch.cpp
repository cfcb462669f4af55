#include "platform/linux/tray/status_notifier_watch.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <utility>

namespace hopsel {

namespace {

constexpr QLatin1String service("org.kde.StatusNotifierWatcher");
constexpr QLatin1String path("/StatusNotifierWatcher");

} // namespace

StatusNotifierWatch::StatusNotifierWatch(const QDBusConnection& bus, std::function<void()> onChange)
    : bus_(bus),
      owner_(service, bus, QDBusServiceWatcher::WatchForOwnerChange),
      onChange_(std::move(onChange)) {
    connect(&owner_, &QDBusServiceWatcher::serviceOwnerChanged, this, &StatusNotifierWatch::ask);
    for (const char* news : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"})
        bus_.connect(QString(), path, service, QString::fromLatin1(news), this, SLOT(ask()));
    ask();
}

void StatusNotifierWatch::ask() {
    if (!bus_.isConnected()) { // a call would not even fail
        QMetaObject::invokeMethod(this, [this] { take(false); }, Qt::QueuedConnection);
        return;
    }
    QDBusMessage question = QDBusMessage::createMethodCall(
        service, path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << QString(service) << QStringLiteral("IsStatusNotifierHostRegistered");
    question.setAutoStartService(false);
    const unsigned number = ++question_;
    auto* reply = new QDBusPendingCallWatcher(bus_.asyncCall(question), this);
    connect(reply, &QDBusPendingCallWatcher::finished, this, [this, number](QDBusPendingCallWatcher* done) {
        done->deleteLater();
        if (number != question_) return;
        const QDBusPendingReply<QDBusVariant> answer = *done;
        const QVariant value = answer.isValid() ? answer.value().variant() : QVariant();
        take(value.userType() == QMetaType::Bool && value.toBool());
    });
}

void StatusNotifierWatch::take(bool hasHost) {
    if (std::exchange(hasHost_, hasHost) != hasHost) onChange_();
}

} // namespace hopsel
