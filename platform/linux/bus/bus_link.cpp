#include "platform/linux/bus/bus_link.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace hopsel {

namespace {

// Spelled out here rather than left to the D-Bus library: it would read the environment only once, and start
// a session bus where there is none.
QString addressOf(QDBusConnection::BusType type) {
    if (type == QDBusConnection::SystemBus)
        return qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/var/run/dbus/system_bus_socket");
    QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    const QString runtimeFolder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!address.isEmpty() || runtimeFolder.isEmpty()) return address;
    return "unix:path=" + runtimeFolder + "/bus";
}

/// Told without the D-Bus library, which would wake up a thread to find out, every time again.
bool isThere(const QString& addresses) {
    const QString kind = QStringLiteral("unix:path=");
    for (const QString& address : addresses.split(u';', Qt::SkipEmptyParts)) {
        if (!address.startsWith(kind)) return true;
        const QByteArray path = address.section(u',', 0, 0).mid(kind.size()).toUtf8();
        if (QFileInfo::exists(QString::fromUtf8(QByteArray::fromPercentEncoding(path)))) return true;
    }
    return false;
}

} // namespace

bool BusLink::connect() {
    if (isConnected()) return false;
    disconnect();
    const QString address = addressOf(type_);
    if (!isThere(address)) return false;
    static int count = 0;
    connection_ = QDBusConnection::connectToBus(address, "hopsel-link-" + QString::number(++count));
    return isConnected();
}

void BusLink::disconnect() {
    const QString name = connection_.name();
    if (name.isEmpty()) return;
    // What a lost one said last may still be queued, with a bare pointer to it.
    if (auto* application = QCoreApplication::instance())
        QMetaObject::invokeMethod(application, [connection = connection_] {}, Qt::QueuedConnection);
    connection_ = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(name);
}

} // namespace hopsel
