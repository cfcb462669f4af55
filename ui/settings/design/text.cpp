#include "ui/settings/design/text.h"

#include <QApplication>
#include <QEvent>
#include <QFontDatabase>
#include <QFontInfo>
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
    QFont font = style == TextStyle::events ? QFontDatabase::systemFont(QFontDatabase::FixedFont)
                                            : QApplication::font();
    if (style == TextStyle::events) font.setFamilies(font.families() + QApplication::font().families());
    font.setPixelSize(scaled(face(style).pixelSize));
    font.setWeight(face(style).weight);
    return font;
}

Text::Text(const QString& text, TextStyle style, Tone tone, QWidget* parent)
    : QLabel(text, parent), tone_(tone) {
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

Text* Text::selectable() {
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return this;
}

void Text::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) applyTone();
    QLabel::changeEvent(event);
}

void Text::applyTone() {
    if (tone_ == Tone::primary || isApplyingTone_) return;
    isApplyingTone_ = true;
    QPalette colors = palette();
    colors.setColor(QPalette::WindowText, color(tone_, QApplication::palette()));
    setPalette(colors);
    isApplyingTone_ = false;
}

} // namespace hopsel::design
