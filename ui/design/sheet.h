// A sheet over a window: it dims what is behind, and neither a click, nor Tab, nor a screen reader gets past
// it.
//
// It is a widget inside of the window, not a window of its own, so that it is in every picture of the window
// and no window manager can put it elsewhere. A child of the window; whoever opened it deletes it.
#pragma once

#include <QPointer>
#include <QWidget>
#include <vector>

namespace hopsel::design {

class Sheet final : public QWidget {
  public:
    /// Takes the contents, which get the size of their hint where the window has room for it. Shown at once,
    /// without taking the focus.
    Sheet(QWidget* contents, QWidget* window);
    ~Sheet() override { enableWhatIsBeneath(); }

  protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

    // What is beneath gets none of it.
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

  private:
    void arrange();
    void disableWhatIsBeneath();
    void enableWhatIsBeneath();
    bool takesTab(QWidget* widget) const;

    QWidget* contents_;
    std::vector<QPointer<QWidget>> beneath_; ///< disabled for the while
};

} // namespace hopsel::design
