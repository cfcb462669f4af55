// The screen savers of the desktops: is one active?
//
// Owned by the system-event observer, one for each connection to the session bus, which outlives it.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QSet>
#include <functional>

namespace hopsel {

class ScreenSaverWatch final : public QObject {
    Q_OBJECT

  public:
    ScreenSaverWatch(const QDBusConnection& bus, std::function<void(bool isActive)> onActive);

  private:
    Q_SLOT void activeChanged(bool isActive, const QDBusMessage& signal);
    void set(const QString& saver, bool isActive);

    QDBusConnection bus_;
    std::function<void(bool)> onActive_;
    QDBusServiceWatcher deaths_;
    QSet<QString> active_; ///< bus names of the savers that are active
};

} // namespace hopsel
