#include "ui/design/reading_text.h"

#include "ui/design/scroll_bar.h"

#include <QApplication>
#include <QScrollBar>
#include <QTextBlock>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

namespace hopsel::design {

ReadingText::ReadingText(TextStyle style, Tone tone, int lineGap, QWidget* parent)
    : QTextEdit(parent), tone_(tone), lineGap_(lineGap) {
    setFont(fontOf(style));
    setFrameShape(QFrame::NoFrame);
    viewport()->setAutoFillBackground(false);
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setTabChangesFocus(true);
    setUndoRedoEnabled(false);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    document()->setDocumentMargin(0);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    applyTone();
    // Queued: the document must not be replaced while it handles the key or click that ended the selection.
    connect(this, &QTextEdit::selectionChanged, this, &ReadingText::catchUp, Qt::QueuedConnection);
}

void ReadingText::setContent(const QString& text) {
    wanted_ = text;
    catchUp();
}

void ReadingText::setScrolling(int height) {
    isScrolling_ = true;
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    makeSlim(verticalScrollBar());
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFixedHeight(height);
}

void ReadingText::catchUp() {
    const bool isBeingSelected = isPressed_ || (hasFocus() && textCursor().hasSelection());
    if (isBeingSelected || wanted_ == shown_) return;
    shown_ = wanted_;
    const int position = textCursor().position();
    const int scrolled = verticalScrollBar()->value();
    setPlainText(shown_);
    heights_.clear();
    naturalWidth_ = fontMetrics().size(0, shown_).width();
    if (lineGap_ > 0) {
        QTextCursor all(document());
        all.select(QTextCursor::Document);
        QTextBlockFormat format;
        format.setBottomMargin(lineGap_);
        all.mergeBlockFormat(format);
    }
    QTextCursor cursor = textCursor();
    cursor.setPosition(std::min(position, document()->characterCount() - 1));
    setTextCursor(cursor);
    verticalScrollBar()->setValue(scrolled);
    updateGeometry();
}

int ReadingText::heightForWidth(int width) const {
    const auto known = heights_.find(width);
    if (known != heights_.end()) return known->second;
    const qreal before = document()->textWidth();
    document()->setTextWidth(width);
    const int height = static_cast<int>(std::ceil(document()->size().height()));
    document()->setTextWidth(before);
    heights_.emplace(width, height);
    return height;
}

QSize ReadingText::sizeHint() const { return {naturalWidth_, minimumSizeHint().height()}; }

QSize ReadingText::minimumSizeHint() const { return {scaled(60), fontMetrics().height()}; }

void ReadingText::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) applyTone();
    if (event->type() == QEvent::FontChange) heights_.clear();
    QTextEdit::changeEvent(event);
}

void ReadingText::focusOutEvent(QFocusEvent* event) {
    QTextEdit::focusOutEvent(event);
    catchUp();
}

void ReadingText::mousePressEvent(QMouseEvent* event) {
    isPressed_ = true;
    QTextEdit::mousePressEvent(event);
}

void ReadingText::mouseReleaseEvent(QMouseEvent* event) {
    QTextEdit::mouseReleaseEvent(event);
    isPressed_ = false;
    catchUp();
}

void ReadingText::wheelEvent(QWheelEvent* event) {
    if (isScrolling_)
        QTextEdit::wheelEvent(event);
    else
        event->ignore();
}

void ReadingText::applyTone() {
    if (isApplyingTone_) return;
    isApplyingTone_ = true;
    QPalette colors; // all that is not set here is inherited
    colors.setColor(QPalette::Text, color(tone_, QApplication::palette()));
    setPalette(colors);
    isApplyingTone_ = false;
}

} // namespace hopsel::design
