// The signals by which a change in Fcitx5 can be noticed.
//
// Made for one owner of Fcitx5's name and destroyed with it. Nothing tells which method is current; but where
// there is a tray or a panel for input methods, Fcitx5 shows the method there, and announces what it shows.
// Its icon in the tray has a bus connection of its own, without a name: it is known by its process. Main
// thread.
#pragma once

#include "platform/linux/base/coalescing_timer.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QSet>
#include <QString>
#include <functional>

namespace hopsel {

class FcitxSignals final : public QObject {
    Q_OBJECT

  public:
    FcitxSignals(const QDBusConnection& bus, const QString& owner);

    std::function<void()> onGroupsChanged;
    std::function<void()> onMethodShown; ///< perhaps another than before; once for a burst

  private:
    Q_SLOT void groupsChanged(const QDBusMessage& signal);
    Q_SLOT void panelChanged(const QDBusMessage& signal);
    Q_SLOT void iconChanged(const QDBusMessage& signal);

    void askProcess(const QString& name, std::function<void(unsigned process)> onAnswer);
    void listenTo(const QString& icon);

    QDBusConnection bus_;
    unsigned process_ = 0;
    QString icon_; ///< unique name; empty while any program's icon is listened to
    QSet<QString> otherIcons_;
    QDBusServiceWatcher iconDeath_;
    CoalescingTimer shownTimer_;
};

} // namespace hopsel
