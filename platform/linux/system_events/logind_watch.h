// What logind says: the machine goes to sleep, and the state of the session that this process belongs to.
//
// Owned by the system-event observer, one for each connection to the system bus, which outlives it. Replies
// that come too late and values of the wrong type are ignored. Main thread.
#pragma once

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <functional>
#include <optional>

namespace hopsel {

/// The last known state of the session; survives connections, so that what a gap hid is still noticed.
struct SessionState {
    std::optional<bool> isActive;
    std::optional<bool> isLocked;
};

class LogindWatch final : public QObject {
    Q_OBJECT

  public:
    struct Callbacks {
        std::function<void(bool goesToSleep)> onSleep;
        std::function<void(bool isActive)> onActive;
        /// `isChange` is false for what was found first.
        std::function<void(bool isChange)> onLocked;
    };

    /// Finds the session without waiting for it, also when logind starts later. The state that is found first
    /// is no change.
    LogindWatch(const QDBusConnection& bus, SessionState& state, Callbacks callbacks);

  private:
    Q_SLOT void prepareForSleep(bool goesToSleep);
    Q_SLOT void propertiesChanged(const QString& interface, const QVariantMap& changed,
                                  const QStringList& invalidated);

    using Reply = std::function<void(const QDBusMessage& reply)>;
    void call(const QString& path, const QString& interface, const QString& method,
              const QVariantList& arguments, Reply reply);
    void findSession();
    void findSessionOfProcess();
    void findSessionOfUser();
    void takeSession(const QString& path);
    void forgetSession();
    void readProperties();
    void takeProperties(const QVariantMap& properties);
    enum class News { none, first, changed };
    static News take(const QVariant& value, std::optional<bool>& known);

    QDBusConnection bus_;
    SessionState& state_;
    Callbacks callbacks_;
    QString session_;
};

} // namespace hopsel
