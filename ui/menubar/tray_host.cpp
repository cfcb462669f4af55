#include "ui/menubar/tray_host.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <stdexcept>

namespace hopsel {

namespace {

constexpr const char* watcherName = "org.kde.StatusNotifierWatcher";
constexpr const char* watcherPath = "/StatusNotifierWatcher";

} // namespace

TrayHost::TrayHost(const QDBusConnection& bus) : bus_(bus) {}

void TrayHost::start() {
    watchScreen();
    if (bus_.isConnected()) {
        watcher_.setConnection(bus_);
        watcher_.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
        watcher_.addWatchedService(watcherName);
        connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, this, [this] { askWatcher(); });
        for (const char* signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"})
            bus_.connect(watcherName, watcherPath, watcherName, signal, this, SLOT(askWatcher()));
        askWatcher();
    }
    if (!isAskingBus_) decide();
}

void TrayHost::askWatcher() {
    isAskingBus_ = true;
    QDBusMessage question =
        QDBusMessage::createMethodCall(watcherName, watcherPath, "org.freedesktop.DBus.Properties", "Get");
    question.setAutoStartService(false);
    question << QString(watcherName) << QString("IsStatusNotifierHostRegistered");
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* finished) {
        finished->deleteLater();
        isAskingBus_ = false;
        const QDBusMessage reply = finished->reply();
        const QVariant answer = qvariant_cast<QDBusVariant>(reply.arguments().value(0)).variant();
        hasBusHost_ = reply.type() == QDBusMessage::ReplyMessage && answer.typeId() == QMetaType::Bool &&
                      answer.toBool();
        decide();
    });
}

void TrayHost::watchScreen() {
    try {
        connection_ = std::make_unique<X11Connection>();
    } catch (const std::runtime_error&) {
        return; // a session without X11 has no such tray
    }
    selection_ = connection_->intern("_NET_SYSTEM_TRAY_S0");
    manager_ = connection_->intern("MANAGER");
    // A new tray tells of itself with a message to the root window.
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_->get(), connection_->root(), XCB_CW_EVENT_MASK, &mask);
    hasX11Host_ = hasX11Host();
    notifier_ = std::make_unique<QSocketNotifier>(connection_->fileDescriptor(), QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, [this] { takeEvents(); });
    takeEvents();
}

void TrayHost::takeEvents() {
    bool changed = false;
    while (const auto event = connection_->nextEvent()) {
        if (eventType(*event) == XCB_CLIENT_MESSAGE)
            changed |= reinterpret_cast<const xcb_client_message_event_t&>(*event).type == manager_;
        else if (eventType(*event) == XCB_DESTROY_NOTIFY)
            changed |= reinterpret_cast<const xcb_destroy_notify_event_t&>(*event).window == owner_;
    }
    if (connection_->isLost()) {
        notifier_->setEnabled(false);
        hasX11Host_ = false;
        if (hasReported_) decide();
        return;
    }
    if (!changed) return;
    hasX11Host_ = hasX11Host();
    if (hasReported_) decide();
}

bool TrayHost::hasX11Host() {
    const XcbPtr<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        connection_->get(), xcb_get_selection_owner(connection_->get(), selection_), nullptr));
    owner_ = reply ? reply->owner : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
    if (owner_ == XCB_WINDOW_NONE) return false;
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY; // to learn of its end
    xcb_change_window_attributes(connection_->get(), owner_, XCB_CW_EVENT_MASK, &mask);
    return true;
}

void TrayHost::decide() {
    const Kind found = hasBusHost_ ? Kind::bus : hasX11Host_ ? Kind::x11 : Kind::none;
    if (hasReported_ && found == kind_) return;
    hasReported_ = true;
    kind_ = found;
    if (onChange) onChange(kind_);
}

} // namespace hopsel
