// The desktop's accessibility bus: found through its launcher on the session bus, connected to, and taken up
// again when it comes back.
//
// Owned by AtspiSecureInput; needs the event loop. It starts neither the launcher nor the bus, and never
// switches accessibility on: programs behave differently then, so that is for the user to decide.
#pragma once

#include "platform/linux/bus/bus_end.h"
#include "platform/linux/bus/bus_greeting.h"

#include <QDBusConnection>
#include <functional>
#include <memory>
#include <optional>

namespace hopsel {

class AccessibilityBus final : public QObject {
    Q_OBJECT

  public:
    /// `onChange`: there is a connection, there is none any more, or `isEnabled` is another.
    AccessibilityBus(const QDBusConnection& sessionBus, std::function<void()> onChange);
    ~AccessibilityBus() override;

    const std::optional<QDBusConnection>& connection() const { return connection_; }
    /// Whether the desktop asks its programs to describe themselves. False as long as nobody says so.
    bool isEnabled() const { return isEnabled_; }
    /// Looks for the bus if there is no connection.
    void retry();

  private Q_SLOTS:
    void readStatus();

  private:
    void disconnect();
    void takeAddress(const QString& addresses);
    void connectTo(const QString& address);

    QDBusConnection sessionBus_;
    std::function<void()> onChange_;
    bool isEnabled_ = false;
    QString address_; ///< the one that is waited for, or connected to
    std::unique_ptr<BusGreeting> greeting_;
    std::optional<QDBusConnection> connection_;
    std::unique_ptr<BusEnd> end_; ///< of the connection
};

} // namespace hopsel
