// The application of the window that has the focus in Hyprland, asked over its own sockets.
//
// Owned by start-up; needs the event loop. A connection that ends is taken up by `start`. What Hyprland says
// of windows is what their programs say: it is cut down to a short name.
#pragma once

#include "platform/linux/applications/window_observer.h"
#include "platform/linux/desktops/hyprland_ipc.h"

#include <QByteArray>

namespace hopsel {

class HyprlandWindowObserver final : public WindowObserver {
  public:
    HyprlandWindowObserver();

    /// What is in front is told when Hyprland has said so.
    void start() override { ipc_.open(); }
    bool isLost() const override;

  private:
    void ask();
    void take(const QByteArray& answer);

    bool isAsking_ = false;
    bool isStale_ = false; ///< something has changed since it was asked
    HyprlandIpc ipc_;
};

} // namespace hopsel
