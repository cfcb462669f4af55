// A line of the status item's menu that only informs, drawn by us in the system's menu.
//
// Owned by the menu's item, which shows it where the menu is the system's own: that draws disabled items grey
// and in one weight. The sizes are the menu's there; elsewhere plain items stand in its place.
#pragma once

#include "model/menu/menu_model.h"

#include <QWidget>

namespace hopsel {

class MenuLabel final : public QWidget {
  public:
    /// `line` is a header, an information or a status, and stays of that kind.
    explicit MenuLabel(MenuItemSpec line);

    void setLine(MenuItemSpec line, const QString& text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QColor ink() const;
    int indent() const;

    MenuItemSpec line_;
    QString text_;
};

} // namespace hopsel
