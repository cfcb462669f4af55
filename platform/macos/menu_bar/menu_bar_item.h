// The status item in the menu bar of macOS: the system's own symbols, or the badge as wide as its labels.
//
// Owned by the status item's controller. An item of our own in place of the toolkit's, which is square and
// has room for one label only, draws its symbols itself and has no name for a screen reader.
#pragma once

#include "platform/macos/menu_bar/status_bar_item.h"
#include "ui/menubar/panel_item.h"

#include <memory>
#include <optional>

namespace hopsel {

class MenuBarItem final : public PanelItem {
  public:
    explicit MenuBarItem(std::unique_ptr<StatusBarItem> item) : item_(std::move(item)) {}

    void show(const StatusItemAppearance& appearance) override;
    void setName(const std::string& name) override { item_->setAccessibilityLabel(name); }

  private:
    std::unique_ptr<StatusBarItem> item_;
    std::optional<StatusItemAppearance> shown_;
};

} // namespace hopsel
