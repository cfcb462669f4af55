// What receives the signals of one connection.
//
// An object of its own because it must be destroyed before the connection is: the D-Bus library queues what
// arrives as events for the receiver, with a bare pointer to the connection in them, and a receiver takes its
// events along. Takes whole messages and nothing else: for typed arguments the library would read whatever
// was sent as if it were of that type, and end the program over it. Owned by the link.
#pragma once

#include <QDBusMessage>
#include <QObject>

namespace hopsel {

class BusEars final : public QObject {
    Q_OBJECT

  public:
    Q_SIGNAL void heard(const QDBusMessage& message);
    Q_SIGNAL void ended();

    Q_SLOT void hear(const QDBusMessage& message) { Q_EMIT heard(message); }
    Q_SLOT void end(const QDBusMessage&) { Q_EMIT ended(); }
};

} // namespace hopsel
