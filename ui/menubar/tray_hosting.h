// Where a status item can be shown: does this desktop have a panel with room for one, and of which kind?
//
// The seam between the status item and the desktop. Main thread.
#pragma once

#include <functional>

namespace hopsel {

enum class TrayKind {
    none,
    statusNotifier, ///< the item is described over D-Bus, and the panel draws it and its menu
    xEmbed,         ///< the item is a window of ours inside the panel's
    menuBar,        ///< the system's: it tints the picture, and opens a menu of its own kind
};

class TrayHosting {
  public:
    using OnChange = std::function<void(TrayKind)>;

    virtual ~TrayHosting() = default;

    /// From here on `onChange` is called with what there is, for the first time as soon as that is known, and
    /// at every change; never inside this call. A panel that restarts is not worth a mention.
    virtual void start(OnChange onChange) = 0;
    /// An item of this kind has been made and cannot change it: nothing else counts any more.
    virtual void settleOn(TrayKind kind) = 0;
};

} // namespace hopsel
