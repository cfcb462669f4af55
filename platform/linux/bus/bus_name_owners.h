// Which of some well-known names have an owner on a message bus now: which programs run in the session.
//
// Owned by whoever asks; needs the event loop, through which the bus tells. Asking is a look into memory.
// Nothing is ever started by it. Main thread.
#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QString>
#include <QStringList>
#include <map>
#include <optional>

namespace hopsel {

class BusNameOwners {
  public:
    /// On a bus that is not there, or goes away, no name has an owner.
    BusNameOwners(const QDBusConnection& bus, const QStringList& names);

    /// False until the bus has answered.
    bool hasOwner(const QString& name) const;

  private:
    void ask(const QString& name);

    QDBusConnection bus_;
    std::map<QString, std::optional<bool>> owned_;
    QDBusServiceWatcher watcher_; ///< the calls under way end with it
};

} // namespace hopsel
