// The Settings window's sidebar: a ground, and on it rows with a symbol and a title, on the accent gradient
// when selected.
#pragma once

#include <QAbstractButton>
#include <QVBoxLayout>

namespace hopsel::design {

/// Tabs of one parent exclude each other; arrow keys go from one to the next. A command is a button among
/// them.
class SidebarRow final : public QAbstractButton {
  public:
    enum class Kind { tab, command };
    SidebarRow(Kind kind, QString symbol, const QString& title, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QString symbol_;
};

/// The ground with its rows in a column.
class Sidebar final : public QWidget {
  public:
    explicit Sidebar(QWidget* parent = nullptr);

    QVBoxLayout* column() const { return column_; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QVBoxLayout* column_;
};

} // namespace hopsel::design
