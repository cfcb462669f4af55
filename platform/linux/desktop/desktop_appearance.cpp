#include "platform/linux/desktop/desktop_appearance.h"

#include <QApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>

namespace hopsel {

namespace {

constexpr const char* service = "org.freedesktop.portal.Desktop";
constexpr const char* path = "/org/freedesktop/portal/desktop";
constexpr const char* interface = "org.freedesktop.portal.Settings";
constexpr const char* group = "org.freedesktop.appearance";
constexpr const char* key = "color-scheme";

/// The portal wraps the value in one variant or, in its older call, in two.
QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

DesktopAppearance::DesktopAppearance(const QDBusConnection& bus)
    : bus_(bus),
      fallback_(design::isDark(QApplication::palette()) ? design::Appearance::dark
                                                        : design::Appearance::light) {}

void DesktopAppearance::start() {
    report(fallback_);
    if (!bus_.isConnected()) return;
    bus_.connect(service, path, interface, "SettingChanged", this,
                 SLOT(settingChanged(QString, QString, QDBusVariant)));
    auto* watcher = new QDBusServiceWatcher(service, bus_, QDBusServiceWatcher::WatchForRegistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, [this] { ask(); });
    ask();
}

void DesktopAppearance::ask() {
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, "Read");
    call << QString(group) << QString(key);
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* finished) {
        finished->deleteLater();
        const QDBusMessage reply = finished->reply();
        if (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty())
            take(reply.arguments().first());
    });
}

void DesktopAppearance::settingChanged(const QString& changedGroup, const QString& changedKey,
                                       const QDBusVariant& value) {
    if (changedGroup == group && changedKey == key) take(value.variant());
}

// 1 is dark, 2 light, anything else no wish.
void DesktopAppearance::take(const QVariant& value) {
    bool isNumber = false;
    switch (unwrapped(value).toUInt(&isNumber)) {
    case 1: report(design::Appearance::dark); break;
    case 2: report(design::Appearance::light); break;
    default: report(fallback_); break;
    }
}

void DesktopAppearance::report(design::Appearance appearance) {
    if (reported_ == appearance) return;
    reported_ = appearance;
    if (onChange) onChange(appearance);
}

} // namespace hopsel
