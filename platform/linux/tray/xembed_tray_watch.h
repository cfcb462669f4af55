// Is there a panel that takes windows in, the older way of X11? Its sign is the owner of _NET_SYSTEM_TRAY_S0.
//
// Owned by the tray host, in sessions where our windows are X11 windows. A new panel says so by a MANAGER
// message on the root window; an old one's window is destroyed.
#pragma once

#include "platform/linux/x11/x11_connection.h"

#include <QSocketNotifier>
#include <functional>

namespace hopsel {

class XEmbedTrayWatch {
  public:
    /// Throws `std::runtime_error` if there is no X server. `onChange` is called when `hasHost` has changed.
    explicit XEmbedTrayWatch(std::function<void()> onChange);

    bool hasHost() const { return owner_ != XCB_WINDOW_NONE; }

  private:
    void findOwner();
    void takeEvents();
    bool isNews(const xcb_generic_event_t& event) const;

    X11Connection connection_;
    QSocketNotifier readable_;
    std::function<void()> onChange_;
    xcb_atom_t selection_;
    xcb_atom_t manager_;
    xcb_window_t owner_ = XCB_WINDOW_NONE;
};

} // namespace hopsel
