// The status item in the panel of a Linux desktop, through the toolkit.
//
// These panels tint nothing, so it is drawn in an ink that is likely to be seen there, and drawn again when
// that changes. Owned by the status item's controller; the menu outlives it.
#pragma once

#include "ui/menubar/panel_item.h"
#include "ui/menubar/tray_hosting.h"

#include <QColor>
#include <QMenu>
#include <QSystemTrayIcon>
#include <optional>

namespace hopsel {

class TrayItem final : public PanelItem {
  public:
    /// `kind`: one that draws or takes in what we give it. Either button opens the menu.
    TrayItem(TrayKind kind, QMenu& menu);

    /// A guess, since no panel tells its colour: white on desktops whose panel comes dark in either
    /// appearance, elsewhere as the application appears. A user's own theme for the panel can prove it wrong.
    static QColor likelyInk();

    void show(const StatusItemAppearance& appearance) override;
    void setName(const std::string& name) override;

    const QSystemTrayIcon& icon() const { return icon_; }

  private:
    QIcon drawn(const StatusItemAppearance& appearance, const QColor& ink) const;

    TrayKind kind_;
    QSystemTrayIcon icon_;
    std::optional<StatusItemAppearance> shown_;
    QColor shownInk_;
};

} // namespace hopsel
