// The status item in the panel of a Linux desktop, through the toolkit.
//
// Each picture is made once: the toolkit keeps whatever it is given, for a new picture at every switch would
// be memory that only grows. Owned by the status item's controller; the menu outlives it.
#pragma once

#include "ui/menubar/panel_item.h"
#include "ui/menubar/status_menu.h"
#include "ui/menubar/tray_hosting.h"

#include <QSystemTrayIcon>
#include <optional>
#include <utility>
#include <vector>

namespace hopsel {

class TrayItem final : public PanelItem {
  public:
    /// `kind`: one that draws or takes in what we give it. Either button opens the menu, the middle one
    /// pauses and resumes.
    TrayItem(TrayKind kind, StatusMenu& menu);

    void show(const StatusItemAppearance& appearance) override;
    void setName(const std::string& name) override;

    const QSystemTrayIcon& icon() const { return icon_; }

  private:
    const QIcon& picture(const StatusItemAppearance& appearance);
    QIcon drawn(const StatusItemAppearance& appearance) const;

    TrayKind kind_;
    QSystemTrayIcon icon_;
    std::optional<StatusItemAppearance> shown_;
    std::vector<std::pair<StatusItemAppearance, QIcon>> pictures_;
};

} // namespace hopsel
