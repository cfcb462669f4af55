// What logind says: the machine goes to sleep, and the state of the session that this process belongs to.
//
// Owned by the system-event observer. Replies that come too late and values of the wrong type are ignored.
#pragma once

#include "platform/linux/bus/bus_name.h"

#include <QVariantMap>
#include <functional>
#include <optional>

namespace hopsel {

/// The last known state of the session; survives the watch, so that what a gap hid is still noticed.
struct SessionState {
    std::optional<bool> isActive;
    std::optional<bool> isLocked;
};

class LogindWatch final {
  public:
    struct Callbacks {
        std::function<void(bool goesToSleep)> onSleep;
        std::function<void(bool isActive)> onActive;
        /// `isChange` is false for what was found first.
        std::function<void(bool isChange)> onLocked;
    };

    /// Finds the session without waiting for it, also when logind starts later. The state that is found first
    /// is no change.
    LogindWatch(std::shared_ptr<BusLink> systemBus, SessionState& state, Callbacks callbacks);

  private:
    void call(const QString& path, const QString& interface, const QString& method,
              const QVariantList& arguments, BusLink::Answer onAnswer);
    void followOwner();
    void propertiesChanged(const QDBusMessage& signal);
    void findSession();
    void findSessionOfProcess();
    void findSessionOfUser();
    void takeSession(const QString& path);
    void readProperties();
    void takeProperties(const QVariantMap& properties);
    enum class News { none, first, changed };
    static News take(const QVariant& value, std::optional<bool>& known);

    SessionState& state_;
    Callbacks callbacks_;
    QString session_;
    std::unique_ptr<BusSubscription> changes_; ///< of the session
    BusName logind_;
    QObject context_; ///< answers end with it
};

} // namespace hopsel
