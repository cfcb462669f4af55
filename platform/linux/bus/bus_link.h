// A connection of our own to a message bus, or none: it can be lost, and taken up again.
//
// Owned by whoever watches something on that bus. Never starts a bus, as the D-Bus library would.
#pragma once

#include <QDBusConnection>

namespace hopsel {

class BusLink {
  public:
    explicit BusLink(QDBusConnection::BusType type) : type_(type) {}
    ~BusLink() { disconnect(); }
    BusLink(const BusLink&) = delete;
    BusLink& operator=(const BusLink&) = delete;

    bool isConnected() const { return connection_.isConnected(); }
    /// True if there is a connection that was not there before.
    bool connect();
    void disconnect();
    QDBusConnection& connection() { return connection_; }

  private:
    QDBusConnection::BusType type_;
    QDBusConnection connection_{QString()};
};

} // namespace hopsel
