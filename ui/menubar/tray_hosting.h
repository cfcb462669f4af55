// Where a status item can be shown: does this desktop have a panel with room for one, and of which kind?
//
// The seam between the status item and the desktop.
#pragma once

#include "ui/menubar/panel_item.h"

#include <functional>
#include <memory>

namespace hopsel {

class StatusMenu;

enum class TrayKind {
    none,
    statusNotifier, ///< the item is described over D-Bus, and the panel draws it and its menu
    shell,          ///< a part of ours in the desktop draws it and its menu from a description
    xEmbed,         ///< the item is a window of ours inside the panel's
    menuBar,        ///< the system's: it has symbols, tints pictures and opens a menu of its own kind
};

class TrayHosting {
  public:
    using OnChange = std::function<void(TrayKind)>;

    virtual ~TrayHosting() = default;

    /// From here on `onChange` is called with what there is, for the first time as soon as that is known, and
    /// at every change; never inside this call. A panel that restarts is not worth a mention.
    virtual void start(OnChange onChange) = 0;
    /// The item for a kind that `onChange` has named, with its menu, which outlives it. It cannot change its
    /// kind: nothing else counts any more.
    virtual std::unique_ptr<PanelItem> makeItem(TrayKind kind, StatusMenu& menu) = 0;
};

} // namespace hopsel
