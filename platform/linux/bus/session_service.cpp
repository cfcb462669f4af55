#include "platform/linux/bus/session_service.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace hopsel {

namespace {

// A desktop that is busy starting may well take a second.
constexpr int answerTimeout = 5000; // ms

} // namespace

SessionService::SessionService(QString name, std::function<void()> onOwnerChanged)
    : name_(std::move(name)), onOwnerChanged_(std::move(onOwnerChanged)) {
    retry();
}

void SessionService::retry() {
    if (link_.isConnected()) return;
    watcher_.reset();
    if (!link_.connect()) return;
    bus().connect(QString(), "/org/freedesktop/DBus/Local", "org.freedesktop.DBus.Local", "Disconnected",
                  this, SLOT(loseBus()));
    // The watch comes before the question, so that no change falls between them.
    isOwnerTold_ = false;
    watcher_ = std::make_unique<QDBusServiceWatcher>(name_, bus(), QDBusServiceWatcher::WatchForOwnerChange);
    connect(watcher_.get(), &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& owner) { setOwner(owner); });

    auto question = QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                   "org.freedesktop.DBus", "GetNameOwner");
    question << name_;
    auto* call = new QDBusPendingCallWatcher(bus().asyncCall(question), watcher_.get());
    connect(call, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* finished) {
        const QDBusPendingReply<QString> reply = *finished;
        finished->deleteLater();
        // A change that was told of is newer than any answer, or the same.
        if (!isOwnerTold_ && reply.isValid()) setOwner(reply.value());
    });
}

void SessionService::call(const QString& path, const QString& interface, const QString& method,
                          const QVariantList& arguments, Answer onAnswer) {
    auto message = QDBusMessage::createMethodCall(owner_, path, interface, method);
    message.setAutoStartService(false);
    message.setArguments(arguments);
    auto* call = new QDBusPendingCallWatcher(bus().asyncCall(message, answerTimeout), this);
    connect(call, &QDBusPendingCallWatcher::finished, this,
            [this, onAnswer = std::move(onAnswer), count = ownerCount_](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                if (count == ownerCount_) onAnswer(finished->reply());
            });
}

void SessionService::setOwner(const QString& owner) {
    isOwnerTold_ = true;
    if (owner == owner_) return;
    const bool isReplaced = !owner_.isEmpty() && !owner.isEmpty();
    if (isReplaced) setOwner(QString());
    ++ownerCount_;
    owner_ = owner;
    onOwnerChanged_();
}

} // namespace hopsel
