#include "ui/design/colors.h"

#include <QApplication>
#include <QStyle>

namespace hopsel::design {

QColor blue() { return QColor::fromRgbF(0.094F, 0.467F, 0.949F); }

QColor violet() { return QColor::fromRgbF(0.435F, 0.282F, 1.0F); }

QLinearGradient accentGradient(const QRectF& bounds) {
    QLinearGradient gradient(bounds.topLeft(), bounds.bottomRight());
    gradient.setColorAt(0, blue());
    gradient.setColorAt(1, violet());
    return gradient;
}

QPalette palette(Appearance appearance) {
    const bool dark = appearance == Appearance::dark;
    const QColor text = dark ? QColor(0xF2, 0xF2, 0xF5) : QColor(0x1C, 0x1C, 0x20);
    const QColor window = dark ? QColor(0x20, 0x20, 0x24) : QColor(0xFA, 0xFA, 0xFC);
    const QColor base = dark ? QColor(0x2B, 0x2B, 0x30) : QColor(0xFF, 0xFF, 0xFF);
    const QColor faint = dark ? QColor(0xA2, 0xA2, 0xAC) : QColor(0x60, 0x60, 0x6A);
    QPalette colors(text, window, base.lighter(110), base.darker(130), base.darker(115), text,
                    base.lighter(120), base, window);
    colors.setColor(QPalette::Button, base);
    colors.setColor(QPalette::AlternateBase, window);
    colors.setColor(QPalette::PlaceholderText, faint);
    colors.setColor(QPalette::ToolTipBase, base);
    colors.setColor(QPalette::ToolTipText, text);
    colors.setColor(QPalette::Highlight, blue());
    colors.setColor(QPalette::HighlightedText, Qt::white);
    colors.setColor(QPalette::Link, dark ? QColor(0x6A, 0xA9, 0xFF) : blue().darker(130));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        QColor disabled = text;
        disabled.setAlphaF(0.4F);
        colors.setColor(QPalette::Disabled, role, disabled);
    }
    return colors;
}

bool isDark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

void useAppearance(Appearance appearance) {
    // The one style that draws everything by the palette alone, on every desktop.
    if (QApplication::style()->objectName() != "fusion") QApplication::setStyle("Fusion");
    QApplication::setPalette(palette(appearance));
}

QColor primary(const QPalette& palette, qreal opacity) {
    QColor text = palette.color(QPalette::Active, QPalette::WindowText);
    text.setAlphaF(static_cast<float>(opacity));
    return text;
}

// Dark enough on the light background, and light enough on the dark one, to be read as small text: 4.5 to 1
// on a card and, accent and secondary, on a tag.
QColor color(Tone tone, const QPalette& palette) {
    const bool dark = isDark(palette);
    switch (tone) {
    case Tone::primary: return primary(palette);
    case Tone::secondary: return palette.color(QPalette::Active, QPalette::PlaceholderText);
    case Tone::accent: return palette.color(QPalette::Active, QPalette::Link);
    case Tone::positive: return dark ? QColor(0x32, 0xD1, 0x5C) : QColor(0x15, 0x77, 0x33);
    case Tone::warning: return dark ? QColor(0xFF, 0x9F, 0x2E) : QColor(0xA8, 0x4E, 0x00);
    case Tone::problem: return dark ? QColor(0xFF, 0x5C, 0x54) : QColor(0xD0, 0x27, 0x1D);
    }
    return primary(palette);
}

} // namespace hopsel::design
