// Is there a panel that shows items described over D-Bus? Asks the StatusNotifierWatcher of the session's
// bus.
//
// Owned by the tray host. Never blocks; the watcher may come, go, and take its time to answer. Main thread.
#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <functional>
#include <optional>

namespace hopsel {

class StatusNotifierWatch final : public QObject {
    Q_OBJECT

  public:
    /// `onChange` is called when `hasHost` has changed, not before the first turn of the loop.
    StatusNotifierWatch(const QDBusConnection& bus, std::function<void()> onChange);

    /// Nothing before the first answer.
    std::optional<bool> hasHost() const { return hasHost_; }

  private Q_SLOTS:
    void ask();

  private:
    void take(bool hasHost);

    QDBusConnection bus_;
    QDBusServiceWatcher owner_;
    std::function<void()> onChange_;
    std::optional<bool> hasHost_;
    unsigned question_ = 0; ///< the number of the last one; an answer to an earlier one is out of date
};

} // namespace hopsel
