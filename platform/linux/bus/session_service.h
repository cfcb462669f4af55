// One program of the session that is found by its name on the session bus: whether it is there, and calls to
// it whose answers count only while it is.
//
// A member of the framework that asks it. It has a connection of its own, which may be lost: then nobody owns
// the name, until `retry` finds a bus again. Nothing is ever started by it. Main thread.
#pragma once

#include "platform/linux/bus/bus_link.h"

#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <functional>
#include <memory>

namespace hopsel {

class SessionService final : public QObject {
    Q_OBJECT

  public:
    /// `onOwnerChanged` is called from the event loop; when one owner follows another, also in between.
    SessionService(QString name, std::function<void()> onOwnerChanged);

    /// Looks for the bus where it has been lost.
    void retry();

    /// The owner's unique name, empty if there is none.
    const QString& owner() const { return owner_; }
    QDBusConnection& bus() { return link_.connection(); }

    using Answer = std::function<void(const QDBusMessage& reply)>;
    /// Asks the owner. `onAnswer` gets the reply or the error, a missing reply included; it is never called
    /// once the owner is another, or none.
    void call(const QString& path, const QString& interface, const QString& method,
              const QVariantList& arguments, Answer onAnswer);

  private:
    void setOwner(const QString& owner);
    Q_SLOT void loseBus() { setOwner(QString()); }

    QString name_;
    std::function<void()> onOwnerChanged_;
    QString owner_;
    bool isOwnerTold_ = false;
    unsigned ownerCount_ = 0; ///< tells an owner from the next, even if it is the same again
    BusLink link_{QDBusConnection::SessionBus};
    std::unique_ptr<QDBusServiceWatcher> watcher_; ///< the question for the first owner ends with it
};

} // namespace hopsel
