// What one connection to the IBus daemon tells unasked, as signals of an object that ends with the
// connection.
//
// The D-Bus library queues what arrives as events for the receiver, with a bare pointer to the connection in
// them. A receiver that outlived its connection would be handed one that has been freed; destroyed first, it
// takes the events along, and nothing late is heard either. Owned by the bus. Main thread.
#pragma once

#include <QObject>
#include <QString>

namespace hopsel {

class IbusSignals final : public QObject {
    Q_OBJECT

  public:
    Q_SIGNAL void disconnected();
    Q_SIGNAL void engineChanged(const QString& engine);
    Q_SIGNAL void registryChanged();
};

} // namespace hopsel
