// The status item itself, as one kind of panel takes it.
//
// Made by the desktop's hosting when there is a panel for it, owned by the status item's controller, whose
// menu it opens and which it does not outlive.
#pragma once

#include "model/menu/status_item_presenter.h"

#include <string>

namespace hopsel {

class PanelItem {
  public:
    virtual ~PanelItem() = default;

    /// Also called when nothing has changed: it is for the item to know what it need not draw again.
    virtual void show(const StatusItemAppearance& appearance) = 0;
    /// What it is and the current source: what a pointer over it, or a screen reader, is told.
    virtual void setName(const std::string& name) = 0;
};

} // namespace hopsel
