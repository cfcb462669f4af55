#include "platform/linux/accessibility/accessibility_bus.h"

#include "platform/linux/bus/bus_call.h"

#include <utility>

namespace hopsel {

namespace {

constexpr const char* service = "org.a11y.Bus";
constexpr const char* path = "/org/a11y/bus";
constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";

} // namespace

AccessibilityBus::AccessibilityBus(std::shared_ptr<BusLink> sessionBus, std::function<void()> onChange)
    : onChange_(std::move(onChange)),
      link_(std::make_shared<BusLink>([this] { return address_; }, BusLink::Return::whenAsked)),
      launcher_(std::move(sessionBus), service, [this] { followLauncher(); }) {
    launcher_.listen({"", path, propertiesInterface, "PropertiesChanged", "sa{sv}as", ""},
                     [this](const QDBusMessage&) { readStatus(); });
    for (const auto change : {&BusLink::connected, &BusLink::lost})
        QObject::connect(link_.get(), change, &context_, [this] { onChange_(); });
}

void AccessibilityBus::followLauncher() {
    address_.clear(); // another launcher has another bus
    link_->close();
    takeStatus(false);
    retry();
}

void AccessibilityBus::retry() {
    if (link_->isConnected()) return;
    launcher_.call(path, service, "GetAddress", {}, &context_, [this](const QDBusMessage& reply) {
        const QString address = bus_call::textIn(reply).value_or(QString());
        if (address != std::exchange(address_, address)) link_->close();
        if (address_.isEmpty()) return;
        readStatus(); // before the bus is there, so that nothing wrong is said of it meanwhile
        link_->retry();
    });
}

void AccessibilityBus::readStatus() {
    launcher_.call(path, propertiesInterface, "Get", {"org.a11y.Status", "IsEnabled"}, &context_,
                   [this](const QDBusMessage& reply) {
                       const QVariant value = bus_call::variantIn(reply);
                       takeStatus(value.userType() == QMetaType::Bool && value.toBool());
                   });
}

void AccessibilityBus::takeStatus(bool isEnabled) {
    if (std::exchange(isEnabled_, isEnabled) != isEnabled) onChange_();
}

} // namespace hopsel
