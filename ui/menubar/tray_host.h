// Is there a panel that shows status items?
//
// Owned by the status-item controller. Two kinds: a registered host on the session bus (StatusNotifierItem),
// and the owner of the X screen's tray selection. Both may come after us, go and return; nothing here waits.
#pragma once

#include "core/platform/linux/x11/x11_connection.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace hopsel {

class TrayHost final : public QObject {
    Q_OBJECT

  public:
    enum class Kind { none, bus, x11 };

    explicit TrayHost(const QDBusConnection& bus);

    /// Reports once what is there, and every change.
    void start();
    Kind kind() const { return kind_; }

    std::function<void(Kind)> onChange;

  private:
    Q_SLOT void askWatcher();
    void watchScreen();
    void takeEvents();
    bool hasX11Host();
    void decide();

    QDBusConnection bus_;
    QDBusServiceWatcher watcher_;
    bool hasBusHost_ = false;
    bool isAskingBus_ = false;
    bool hasX11Host_ = false;
    std::unique_ptr<X11Connection> connection_;
    std::unique_ptr<QSocketNotifier> notifier_; ///< on the connection's descriptor, so destroyed before it
    xcb_atom_t selection_ = XCB_ATOM_NONE;
    xcb_atom_t manager_ = XCB_ATOM_NONE;
    xcb_window_t owner_ = XCB_WINDOW_NONE;
    bool hasReported_ = false;
    Kind kind_ = Kind::none;
};

} // namespace hopsel
