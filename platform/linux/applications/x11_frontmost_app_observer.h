// The application whose window the window manager has made the active one.
//
// Owned by start-up; needs the event loop, through which it learns of changes on a connection of its own. A
// program may name its window only after that has become active, so the active window is watched too. It
// survives the loss of the server: the owner calls `start` again.
#pragma once

#include "platform/linux/applications/window_observer.h"
#include "platform/linux/base/coalescing_timer.h"
#include "platform/linux/x11/x11_connection.h"

#include <QSocketNotifier>
#include <memory>
#include <optional>
#include <string>

namespace hopsel {

class X11FrontmostAppObserver final : public WindowObserver {
  public:
    X11FrontmostAppObserver();

    /// Also connects anew after a loss. Without a server the application in front is absent. Like every later
    /// report, that of another start comes only if the value is another than the last one reported.
    void start() override;

    /// False where there is no server to be found.
    bool isLost() const override;

  private:
    bool isConnected() const { return connection_ && !connection_->isLost(); }
    void connect();
    void takeEvents();
    bool isNews(const xcb_generic_event_t& event) const;
    std::optional<std::string> readIdentifier();
    xcb_window_t readActiveWindow();
    void watch(xcb_window_t window);
    xcb_get_property_cookie_t askForText(xcb_atom_t property);
    std::string text(xcb_get_property_cookie_t cookie);

    std::unique_ptr<X11Connection> connection_;
    std::unique_ptr<QSocketNotifier> notifier_; ///< on the connection's descriptor, so destroyed before it
    CoalescingTimer readAhead_;                 ///< for events that an answer brought along
    xcb_atom_t activeWindow_ = XCB_ATOM_NONE;
    xcb_atom_t gtkApplicationID_ = XCB_ATOM_NONE;
    xcb_atom_t kdeDesktopFile_ = XCB_ATOM_NONE;
    xcb_atom_t utf8String_ = XCB_ATOM_NONE;
    xcb_window_t watched_ = XCB_WINDOW_NONE;
};

} // namespace hopsel
