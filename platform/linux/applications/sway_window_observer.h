// The application of the window that has the focus in sway, asked over sway's own socket ($SWAYSOCK).
//
// Owned by start-up; needs the event loop. A connection that ends is taken up by `start`, which reads the
// environment anew. What sway says of windows is what their programs say: it is cut down to a short name.
#pragma once

#include "platform/linux/applications/window_observer.h"
#include "platform/linux/desktops/sway_ipc.h"

#include <QByteArray>

namespace hopsel {

class SwayWindowObserver final : public WindowObserver {
  public:
    SwayWindowObserver();

    /// What is in front is told when sway has said so.
    void start() override;
    bool isLost() const override;

  private:
    void take(quint32 type, const QByteArray& payload);
    void ask();

    bool isAsking_ = false;
    bool isStale_ = false; ///< something has changed since it was asked
    SwayIpc ipc_;
};

} // namespace hopsel
