// Looks, before anyone connects to a message bus, whether somebody behind its socket answers.
//
// The D-Bus library waits for the greeting, and with it every bus connection of the process. A socket that
// accepts and stays silent must not cost more than a descriptor. Owned by whoever wants to connect.
#pragma once

#include <QByteArray>
#include <QLocalSocket>
#include <QString>
#include <functional>

namespace hopsel {

class BusGreeting final : public QObject {
  public:
    /// Tells once, and never if nobody answers. Whoever is told may destroy this at once.
    BusGreeting(const QString& address, std::function<void(bool isGreeted)> onAnswer);

    /// The first of the bus's addresses that is a socket on this machine, with nothing but its place in it:
    /// other kinds of address start programs or reach other machines. Empty if there is none.
    static QString localAddress(const QString& addresses);

  private:
    void finish(bool isGreeted);

    std::function<void(bool)> onAnswer_;
    QLocalSocket socket_;
};

} // namespace hopsel
