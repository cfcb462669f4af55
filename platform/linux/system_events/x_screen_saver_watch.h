// XScreenSaver, which is on no bus: it says on the root window of the X server whether the screen is locked.
//
// Owned by the system-event observer; has a connection of its own, watched by the event loop. A saver that is
// killed may leave its word behind: it counts only as long as the saver's own window is there.
#pragma once

#include "platform/linux/x11/x11_connection.h"

#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace hopsel {

class XScreenSaverWatch final {
  public:
    /// `onLocked` is told of each change, and at once of a screen that is locked already; not before the
    /// first `connect`.
    explicit XScreenSaverWatch(std::function<void(bool isLocked)> onLocked)
        : onLocked_(std::move(onLocked)) {}

    /// Does nothing while there is a connection, nor without a server.
    void connect();
    bool isLost() const { return !connection_ || connection_->isLost(); }

  private:
    void takeEvents();
    bool isNews(const xcb_generic_event_t& event) const;
    bool readLocked();
    bool saysLocked() const;
    xcb_window_t findSaver() const;
    void set(bool isLocked);

    std::function<void(bool)> onLocked_;
    std::unique_ptr<X11Connection> connection_;
    std::unique_ptr<QSocketNotifier> notifier_; ///< on the connection's descriptor, so destroyed before it
    xcb_window_t saver_ = XCB_WINDOW_NONE;      ///< known while it locks
    xcb_atom_t status_ = XCB_ATOM_NONE;
    xcb_atom_t version_ = XCB_ATOM_NONE;
    xcb_atom_t lock_ = XCB_ATOM_NONE;
    xcb_atom_t password_ = XCB_ATOM_NONE;
    bool isLocked_ = false;
};

} // namespace hopsel
