#include "platform/linux/ibus/ibus_bus.h"

#include "platform/linux/bus/bus_call.h"
#include "platform/linux/ibus/ibus_address.h"

#include <utility>

namespace hopsel {

namespace {

const QString service = QStringLiteral("org.freedesktop.IBus");
const bus_call::Object daemon{service, QStringLiteral("/org/freedesktop/IBus")};

} // namespace

IbusBus::IbusBus(Callbacks callbacks)
    : link_(std::make_shared<BusLink>([] { return ibus_address::current().value_or(QString()); },
                                      BusLink::Return::whenAsked)),
      daemon_(link_, service) {
    daemon_.listen({{}, daemon.path, service, "GlobalEngineChanged", "s", {}},
                   [tell = callbacks.onEngineChanged](const QDBusMessage& told) {
                       tell(told.arguments().constFirst().toString());
                   });
    daemon_.listen({{}, daemon.path, service, "RegistryChanged", "", {}},
                   [tell = callbacks.onRegistryChanged](const QDBusMessage&) { tell(); });
    QObject::connect(link_.get(), &BusLink::connected, &context_, callbacks.onReady);
    QObject::connect(link_.get(), &BusLink::lost, &context_, [this, tell = callbacks.onLost] {
        if (!isClosing_) tell();
    });
}

void IbusBus::close() {
    isClosing_ = true;
    link_->close();
    isClosing_ = false;
}

void IbusBus::call(const char* method, const QVariantList& arguments, BusLink::Answer onAnswer) {
    link_->call(bus_call::method(daemon, service, method, arguments), &context_, std::move(onAnswer),
                BusLink::endless);
}

void IbusBus::readProperty(const char* name, BusLink::Answer onAnswer) {
    link_->call(bus_call::method(daemon, "org.freedesktop.DBus.Properties", "Get", {service, name}),
                &context_, std::move(onAnswer), BusLink::endless);
}

} // namespace hopsel
