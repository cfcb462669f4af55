#include "platform/linux/accessibility/accessibility_bus.h"

#include "platform/linux/bus/bus_call.h"

#include <QDBusServiceWatcher>
#include <QDBusVariant>

namespace hopsel {

namespace {

const bus_call::Object launcher{"org.a11y.Bus", "/org/a11y/bus"};
constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";

} // namespace

AccessibilityBus::AccessibilityBus(const QDBusConnection& sessionBus, std::function<void()> onChange)
    : sessionBus_(sessionBus), onChange_(std::move(onChange)) {
    // From whomever it comes: it is only the reason to ask.
    sessionBus_.connect(QString(), launcher.path, propertiesInterface, "PropertiesChanged", this,
                        SLOT(readStatus()));
    auto* watcher = new QDBusServiceWatcher(launcher.service, sessionBus_,
                                            QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& owner) {
                disconnect(); // another launcher has another bus
                readStatus();
                if (!owner.isEmpty()) retry();
            });
    retry();
}

AccessibilityBus::~AccessibilityBus() {
    onChange_ = nullptr;
    disconnect();
}

void AccessibilityBus::retry() {
    if (connection_) return;
    bus_call::ask(sessionBus_, bus_call::method(launcher, "org.a11y.Bus", "GetAddress"), this,
                  [this](const QVariant& answer) { takeAddress(answer.toString()); });
}

void AccessibilityBus::readStatus() {
    bus_call::ask(sessionBus_,
                  bus_call::method(launcher, propertiesInterface, "Get", {"org.a11y.Status", "IsEnabled"}),
                  this, [this](const QVariant& answer) {
                      const QVariant value = qvariant_cast<QDBusVariant>(answer).variant();
                      const bool isEnabled = value.typeId() == QMetaType::Bool && value.toBool();
                      if (std::exchange(isEnabled_, isEnabled) != isEnabled) onChange_();
                  });
}

void AccessibilityBus::takeAddress(const QString& addresses) {
    const QString address = BusGreeting::localAddress(addresses);
    if (address.isEmpty() || connection_ || (greeting_ && address == address_)) return;
    readStatus(); // before the bus is there, so that nothing wrong is said of it meanwhile
    address_ = address;
    greeting_ = std::make_unique<BusGreeting>(address, [this](bool isGreeted) {
        greeting_.reset();
        if (isGreeted) connectTo(address_);
    });
}

void AccessibilityBus::connectTo(const QString& address) {
    static int count = 0;
    const QString name = "hopsel-accessibility-" + QString::number(++count);
    QDBusConnection connection = QDBusConnection::connectToBus(address, name);
    if (!connection.isConnected()) {
        QDBusConnection::disconnectFromBus(name);
        return;
    }
    end_ = std::make_unique<BusEnd>(connection);
    connect(end_.get(), &BusEnd::reached, this, [this] { disconnect(); });
    connection_ = connection;
    onChange_();
}

void AccessibilityBus::disconnect() {
    greeting_.reset();
    if (!connection_) return;
    const QString name = connection_->name();
    connection_.reset();
    if (onChange_) onChange_();
    end_.reset();
    QDBusConnection::disconnectFromBus(name);
}

} // namespace hopsel
