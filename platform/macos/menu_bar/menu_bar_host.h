// The system's menu bar, which is always there and takes every item.
//
// Owned by the status item's controller.
#pragma once

#include "ui/menubar/tray_hosting.h"

#include <QObject>

namespace hopsel {

class MenuBarHost final : public TrayHosting {
  public:
    void start(OnChange onChange) override;
    std::unique_ptr<PanelItem> makeItem(TrayKind kind, StatusMenu& menu) override;

  private:
    QObject context_; ///< with it the call that is on its way is gone
};

} // namespace hopsel
