// The signals by which a change in Fcitx5 can be noticed.
//
// Made for one owner of Fcitx5's name and destroyed with it. Nothing tells which method is current; but where
// there is a tray or a panel for input methods, Fcitx5 shows the method there, and announces what it shows.
// Its icon in the tray has a bus connection of its own, without a name: it is known by its process. Main
// thread.
#pragma once

#include "platform/linux/base/coalescing_timer.h"
#include "platform/linux/bus/bus_name.h"

#include <QSet>

namespace hopsel {

class FcitxSignals final {
  public:
    FcitxSignals(std::shared_ptr<BusLink> bus, const QString& owner);

    std::function<void()> onGroupsChanged;
    std::function<void()> onMethodShown; ///< perhaps another than before; once for a burst

  private:
    void iconChanged(const QString& sender);
    void askProcess(const QString& name, std::function<void(unsigned process)> onAnswer);
    void listenTo(const QString& icon);

    std::shared_ptr<BusLink> bus_;
    unsigned process_ = 0;
    QString icon_; ///< unique name; empty while any program's icon is listened to
    QSet<QString> otherIcons_;
    CoalescingTimer shownTimer_;
    BusSubscription groups_;
    BusSubscription panel_;
    std::unique_ptr<BusSubscription> icons_;
    std::unique_ptr<BusName> iconOwner_;
    QObject context_; ///< answers end with it
};

} // namespace hopsel
