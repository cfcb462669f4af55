// Text of any length to read, select and copy, which breaks its lines wherever it must.
//
// For what other programs and the user's files name, and for what changes while it is read: a text that is
// being selected stays as it is until the user lets go, else nobody could copy from a live list.
#pragma once

#include "ui/design/text.h"

#include <QTextEdit>
#include <map>

namespace hopsel::design {

class ReadingText final : public QTextEdit {
  public:
    /// `lineGap`: between paragraphs, in points.
    explicit ReadingText(TextStyle style, Tone tone = Tone::primary, int lineGap = 0,
                         QWidget* parent = nullptr);

    /// Shown at once, or as soon as nothing is selected any more.
    void setContent(const QString& text);
    /// As high as this, with a scroll bar. Without it the text is as high as its lines.
    void setScrolling(int height);

    bool hasHeightForWidth() const override { return !isScrolling_; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void changeEvent(QEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

  private:
    void applyTone();
    void catchUp();

    Tone tone_;
    int lineGap_;
    QString wanted_;
    QString shown_;
    int naturalWidth_ = 0;               ///< with no line broken
    mutable std::map<int, int> heights_; ///< by width; a layout asks for the same again and again
    bool isScrolling_ = false;
    bool isPressed_ = false;
    bool isApplyingTone_ = false;
};

} // namespace hopsel::design
