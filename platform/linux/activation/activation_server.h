// How a second start of the program brings the running copy to the front.
//
// The running copy listens in two places: on the session bus as org.freedesktop.Application, where desktops
// look too, and at a socket in the user's runtime folder, for sessions without a bus. Each display has its
// own. Made by the delegate of the copy that holds the single-instance lock; needs the event loop.
#pragma once

#include <QDBusConnection>
#include <QLocalServer>
#include <QObject>
#include <QVariantMap>
#include <functional>
#include <memory>

namespace hopsel {

class ActivationServer final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

  public:
    explicit ActivationServer(const QDBusConnection& bus);
    ~ActivationServer() override;

    /// Another start wants us in front; `token` is the right to take the focus, as the desktop gave it, or
    /// empty.
    std::function<void(const QString& token)> onActivate;

    // The D-Bus interface.
    Q_INVOKABLE void Activate(const QVariantMap& platformData); // NOLINT(readability-identifier-naming)

  private:
    void takeConnection();

    QDBusConnection bus_;
    QLocalServer server_;
};

/// Asks the running copy of this display to come to the front, with the focus that this start was given.
/// False if it cannot be reached. Waits for at most a second.
bool activateRunningCopy(const QDBusConnection& bus);

} // namespace hopsel
