// Which application is in front, in an X11 session: the window that the window manager calls active.
//
// Owned by the platform, driven by the event loop over a connection of its own. When the server is lost it
// reports that nothing is in front; `start` then connects anew. All it reads was written by other programs
// and is not believed to have any form.
#pragma once

#include "app/adapters/frontmost_app_observing.h"
#include "core/platform/linux/x11/x11_connection.h"

#include <QSocketNotifier>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace hopsel {

class X11FrontmostAppObserver final : public FrontmostAppObserving {
  public:
    X11FrontmostAppObserver() = default;
    ~X11FrontmostAppObserver() override;

    /// Without a display it reports that nothing is in front, once, and can be started again.
    void start() override;
    bool isLost() const { return connection_ == nullptr; }

  private:
    struct Atoms {
        xcb_atom_t activeWindow;
        xcb_atom_t gtkApplicationId;
        xcb_atom_t desktopFile;
    };

    void takeEvents();
    bool concernsActiveWindow(const xcb_generic_event_t& event) const;
    void lose();
    void watch(xcb_window_t window, std::uint32_t mask);
    void readActiveWindow();
    std::optional<std::string> identifierOf(xcb_window_t window);
    std::vector<std::string> candidates(xcb_window_t window);
    std::string textProperty(xcb_window_t window, xcb_atom_t property);
    void report(const std::optional<std::string>& identifier);

    std::unique_ptr<X11Connection> connection_;
    std::unique_ptr<QSocketNotifier> notifier_; ///< on the connection's descriptor, so destroyed before it
    Atoms atoms_{};
    xcb_window_t active_ = XCB_WINDOW_NONE;
    bool hasReported_ = false;
    std::optional<std::string> reported_;
};

} // namespace hopsel
