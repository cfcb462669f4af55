// Tells that a bus connection has ended.
//
// An object of its own because it must be destroyed before the connection is: the D-Bus library queues what
// arrives as events for the receiver, with a bare pointer to the connection in them, and a receiver takes its
// events along. Owned by whoever owns the connection. Main thread.
#pragma once

#include <QDBusConnection>
#include <QObject>

namespace hopsel {

class BusEnd final : public QObject {
    Q_OBJECT

  public:
    explicit BusEnd(QDBusConnection& connection) {
        connection.connect(QString(), "/org/freedesktop/DBus/Local", "org.freedesktop.DBus.Local",
                           "Disconnected", this, SIGNAL(reached()));
    }

    Q_SIGNAL void reached();
};

} // namespace hopsel
