// What the onboarding draws itself: the progress, the keys to choose from, and the input source that changes.
//
// Parts of the onboarding's pages, owned by them.
#pragma once

#include "ui/design/text.h"

#include <QRadioButton>
#include <QWidget>

namespace hopsel {

/// A capsule for each step; those up to the current one are filled.
class StepBar final : public QWidget {
  public:
    explicit StepBar(int steps, QWidget* parent = nullptr);

    /// The current one from 1.
    void setSteps(int steps, int current);
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    int steps_;
    int current_ = 1;
};

/// One of the keys, as a large button. Those of one parent exclude each other; arrow keys choose.
class KeyChoice final : public QRadioButton {
  public:
    explicit KeyChoice(const QString& keyName, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& position) const override { return rect().contains(position); }
    /// Return belongs to the window, also on desktops where it presses buttons.
    void keyPressEvent(QKeyEvent* event) override;
};

/// The label of an input source and its name, large. Turns green once it has been switched.
class SourceTile final : public QWidget {
  public:
    explicit SourceTile(QWidget* parent = nullptr);

    void setSource(const QString& label, const QString& name);
    void setPassed(bool passed);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    class Badge;

    Badge* badge_;
    design::Text* name_;
    bool passed_ = false;
};

} // namespace hopsel
