#include "ui/design/text.h"

#include "ui/design/accessible_roles.h"

#include <QApplication>
#include <QEvent>
#include <QFontDatabase>
#include <QFontInfo>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace hopsel::design {

namespace {

constexpr qreal usualPixelSize = 13;

struct Face {
    qreal pixelSize;
    QFont::Weight weight;
};

Face face(TextStyle style) {
    switch (style) {
    case TextStyle::largeTitle: return {28, QFont::Bold};
    case TextStyle::title: return {22, QFont::Bold};
    case TextStyle::title3: return {15, QFont::DemiBold};
    case TextStyle::headline: return {13, QFont::DemiBold};
    case TextStyle::body: return {13, QFont::Normal};
    case TextStyle::key: return {13, QFont::Medium};
    case TextStyle::callout: return {12, QFont::Normal};
    case TextStyle::caption:
    case TextStyle::events: return {11, QFont::Normal};
    }
    return {usualPixelSize, QFont::Normal};
}

} // namespace

qreal textScale() {
    // Systems differ by a point or two around the usual size; only a wish for larger text is meant by more.
    const qreal size = QFontInfo(QApplication::font()).pixelSize();
    return std::clamp(size / usualPixelSize, 1.0, 3.0);
}

int scaled(qreal length) { return static_cast<int>(std::lround(length * textScale())); }

QFont fontOf(TextStyle style) {
    QFont font = QApplication::font();
    if (style == TextStyle::events) {
        // By its real name: among other families, "monospace" is not looked up.
        const QFontInfo fixed(QFontDatabase::systemFont(QFontDatabase::FixedFont));
        font.setFamilies(QStringList{fixed.family()} + font.families());
    }
    font.setPixelSize(scaled(face(style).pixelSize));
    font.setWeight(face(style).weight);
    return font;
}

Text::Text(const QString& text, TextStyle style, Tone tone, QWidget* parent) : QLabel(parent), tone_(tone) {
    // Before anything is said of it: a screen reader's description is made once.
    if (style == TextStyle::title || style == TextStyle::largeTitle)
        setAccessibleRole(this, QAccessible::Heading);
    setText(text);
    setTextFormat(Qt::PlainText);
    setFont(fontOf(style));
    applyTone();
}

void Text::setTone(Tone tone) {
    tone_ = tone;
    applyTone();
}

Text* Text::wrapped() {
    setWordWrap(true);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    return this;
}

Text* Text::elided() {
    isElided_ = true;
    setText(text().simplified());
    setToolTip(text());
    return this;
}

QSize Text::minimumSizeHint() const {
    const QSize whole = QLabel::minimumSizeHint();
    return isElided_ ? QSize(std::min(whole.width(), scaled(60)), whole.height()) : whole;
}

void Text::paintEvent(QPaintEvent* event) {
    if (!isElided_) {
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(rect(), static_cast<int>(alignment()) | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideMiddle, width()));
}

void Text::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) applyTone();
    QLabel::changeEvent(event);
}

void Text::applyTone() {
    if (isApplyingTone_) return;
    isApplyingTone_ = true;
    QPalette colors; // all that is not set here is inherited
    if (tone_ != Tone::primary) colors.setColor(QPalette::WindowText, color(tone_, QApplication::palette()));
    setPalette(colors);
    isApplyingTone_ = false;
}

} // namespace hopsel::design
