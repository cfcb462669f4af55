#include "platform/linux/desktop/desktop_appearance.h"

#include "platform/linux/bus/bus_call.h"

#include <QApplication>
#include <QDBusVariant>

namespace hopsel {

namespace {

constexpr const char* service = "org.freedesktop.portal.Desktop";
constexpr const char* path = "/org/freedesktop/portal/desktop";
constexpr const char* interface = "org.freedesktop.portal.Settings";
constexpr const char* group = "org.freedesktop.appearance";
constexpr const char* key = "color-scheme";

/// The portal wraps the value in one variant or, in its older call, in two.
QVariant unwrapped(QVariant value) {
    while (value.userType() == qMetaTypeId<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

DesktopAppearance::DesktopAppearance(std::shared_ptr<BusLink> sessionBus)
    : bus_(std::move(sessionBus)),
      fallback_(design::isDark(QApplication::palette()) ? design::Appearance::dark
                                                        : design::Appearance::light) {}

void DesktopAppearance::start() {
    report(fallback_);
    portal_ = std::make_unique<BusName>(bus_, service, [this] {
        if (portal_->isOwned()) ask();
    });
    portal_->listen({"", path, interface, "SettingChanged", "ssv", group},
                    [this](const QDBusMessage& signal) {
                        if (signal.arguments().at(1).toString() == key) take(signal.arguments().at(2));
                    });
    QObject::connect(bus_.get(), &BusLink::connected, &context_, [this] { ask(); });
    ask();
}

void DesktopAppearance::ask() {
    QDBusMessage call = bus_call::method({service, path}, interface, "Read", {QString(group), QString(key)});
    call.setAutoStartService(true); // it is there for the first program that asks
    bus_->call(call, &context_, [this](const QDBusMessage& reply) {
        if (bus_call::isReply(reply, "v")) take(reply.arguments().constFirst());
    });
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
