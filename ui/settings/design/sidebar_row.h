// One row of the Settings window's sidebar: a symbol and a title, on the accent gradient when selected.
#pragma once

#include <QAbstractButton>

namespace hopsel::design {

/// Rows of one parent exclude each other; arrow keys go from one to the next.
class SidebarRow final : public QAbstractButton {
  public:
    SidebarRow(QString symbol, const QString& title, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QString symbol_;
};

} // namespace hopsel::design
