// The title of a group that can be opened and closed: an arrow and a text that breaks its lines.
#pragma once

#include <QAbstractButton>

namespace hopsel::design {

/// Checked while the group is open. The contents belong to whoever made it.
class Disclosure final : public QAbstractButton {
  public:
    explicit Disclosure(const QString& title, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace hopsel::design
