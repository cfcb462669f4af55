// The colours of the windows, in light and in dark. Pure functions of a palette.
//
// Everything is drawn in the palette's text colour at some opacity, or in one of the colours here, so that a
// change of the appearance needs nothing but a repaint.
#pragma once

#include <QColor>
#include <QLinearGradient>
#include <QPalette>
#include <QRectF>

namespace hopsel::design {

enum class Appearance { light, dark };

/// sRGB 0.094, 0.467, 0.949.
QColor blue();
/// sRGB 0.435, 0.282, 1.0.
QColor violet();
/// From blue in the top-left corner to violet in the bottom-right one.
QLinearGradient accentGradient(const QRectF& bounds);

QPalette palette(Appearance appearance);
bool isDark(const QPalette& palette);
/// Gives the whole application our style and the palette. Every widget that is shown repaints itself.
void useAppearance(Appearance appearance);

/// The colour of text, `opacity` from 0 to 1.
QColor primary(const QPalette& palette, qreal opacity = 1);

/// What a text or symbol wants to say by its colour.
enum class Tone { primary, secondary, accent, positive, warning, problem };
QColor color(Tone tone, const QPalette& palette);

} // namespace hopsel::design
