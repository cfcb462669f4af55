// How a second start of the program brings the running copy to the front.
//
// The running copy listens in two places: on the session bus as org.freedesktop.Application, where desktops
// look too, and at a socket in the user's runtime folder, for sessions without a bus. Each display has its
// own. Made by the delegate of the copy that holds the single-instance lock; needs the event loop.
#pragma once

#include "platform/linux/bus/bus_link.h"

#include <QDBusVirtualObject>
#include <QLocalServer>

namespace hopsel {

class ActivationServer final : public QDBusVirtualObject {
  public:
    explicit ActivationServer(std::shared_ptr<BusLink> bus);
    ~ActivationServer() override;

    /// Another start wants us in front; `token` is the right to take the focus, as the desktop gave it, or
    /// empty.
    std::function<void(const QString& token)> onActivate;

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

  private:
    void appear();
    void takeConnection();

    std::shared_ptr<BusLink> bus_;
    QLocalServer server_;
};

/// Asks the running copy of this display to come to the front, with the focus that this start was given: at
/// its socket, else on the session bus. False if it cannot be reached. Waits for at most two seconds.
bool activateRunningCopy();

} // namespace hopsel
