// The buttons of the windows, and the switch.
//
// Real push buttons and check boxes, drawn by themselves: keyboard, screen readers and tests find what they
// expect. The focus is shown when it came by the keyboard.
#pragma once

#include <QCheckBox>
#include <QPushButton>

namespace hopsel::design {

class Button final : public QPushButton {
  public:
    enum class Kind {
        primary,    ///< white on the accent gradient
        secondary,  ///< on a faint ground
        borderless, ///< only its text, in the secondary colour
        keyCap,     ///< looks like a key; leaves out the middle of its text when there is no room
    };

    Button(const QString& text, Kind kind, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Kind kind_;
};

/// A check box that looks like a switch. Its text is only for screen readers.
class Switch final : public QCheckBox {
  public:
    explicit Switch(const QString& accessibleName, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& position) const override { return rect().contains(position); }
};

} // namespace hopsel::design
