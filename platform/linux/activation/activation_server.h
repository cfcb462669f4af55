// How a second start of the program brings the running copy to the front.
//
// The running copy listens in two places: on the session bus as org.freedesktop.Application, where desktops
// look too, and at a socket in the user's runtime folder, for sessions without a bus. Each display has its
// own. At the socket, which only the same user can open, a start may also ask for something: a line that
// begins with a zero byte, answered by the reply and the end of the connection. Made by the delegate of the
// copy that holds the single-instance lock; needs the event loop.
#pragma once

#include "platform/linux/bus/bus_link.h"

#include <QDBusVirtualObject>
#include <QLocalServer>
#include <QLocalSocket>
#include <functional>
#include <memory>
#include <string>

namespace hopsel {

class ActivationServer final : public QDBusVirtualObject {
  public:
    explicit ActivationServer(std::shared_ptr<BusLink> bus);
    ~ActivationServer() override;

    /// Another start wants us in front; `token` is the right to take the focus, as the desktop gave it, or
    /// empty.
    std::function<void(const QString& token)> onActivate;

    /// Another start asks for something, at the socket only; the answer may come later, and to nobody.
    std::function<void(const std::string& request,
                       const std::function<void(const std::string& reply)>& answer)>
        onCommand;

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

  private:
    void appear();
    void takeConnection();
    void read(QLocalSocket& socket);

    std::shared_ptr<BusLink> bus_;
    QLocalServer server_;
};

enum class CopyAsked { answered, notRunning, noAnswer };

/// Asks the running copy of this display for something. Waits for at most some seconds.
CopyAsked askRunningCopy(const std::string& request, std::string& reply);

/// Asks the running copy of this display to come to the front, with the focus that this start was given: at
/// its socket, else on the session bus. False if it cannot be reached. Waits for at most two seconds.
bool activateRunningCopy();

} // namespace hopsel
