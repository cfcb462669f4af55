#include "platform/linux/tray/status_notifier_watch.h"

#include "platform/linux/bus/bus_call.h"

#include <utility>

namespace hopsel {

namespace {

constexpr QLatin1String service("org.kde.StatusNotifierWatcher");
constexpr QLatin1String path("/StatusNotifierWatcher");

} // namespace

StatusNotifierWatch::StatusNotifierWatch(std::shared_ptr<BusLink> bus, std::function<void()> onChange)
    : onChange_(std::move(onChange)), watcher_(std::move(bus), service, [this] { ask(); }) {
    for (const char* news : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"})
        watcher_.listen({"", path, service, news, "", ""}, [this](const QDBusMessage&) { ask(); });
    QObject::connect(watcher_.bus().get(), &BusLink::connected, &context_, [this] { ask(); });
    silence_.setSingleShot(true);
    QObject::connect(&silence_, &QTimer::timeout, &context_, [this] { take(hasHost_.value_or(false)); });
    silence_.start(std::chrono::seconds(1));
    ask();
}

// By the name, so that "nobody" is an answer as well.
void StatusNotifierWatch::ask() {
    if (!watcher_.bus()->isConnected()) {
        if (hasHost_) take(false);
        return;
    }
    const auto question = bus_call::method({service, path}, "org.freedesktop.DBus.Properties", "Get",
                                           {QString(service), "IsStatusNotifierHostRegistered"});
    watcher_.bus()->call(question, &context_, [this, number = ++question_](const QDBusMessage& reply) {
        if (number != question_) return;
        const QVariant value = bus_call::variantIn(reply);
        take(value.userType() == QMetaType::Bool && value.toBool());
    });
}

void StatusNotifierWatch::take(bool hasHost) {
    if (std::exchange(hasHost_, hasHost) != hasHost) onChange_();
}

} // namespace hopsel
