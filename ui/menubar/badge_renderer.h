// Draws the badge with the labels of input sources, the current one filled with its letter cut out. Pure.
//
// `wide` is one ink on transparent, for a menu bar that tints it. `square` is for panels that tint nothing
// and tell nobody how they look: black on white inside a black edge, so that one of the two stands out on any
// ground.
#pragma once

#include "model/menu/status_item_presenter.h"

#include <QColor>
#include <QImage>

namespace hopsel::badge_renderer {

/// The current label alone, for where two would be too small to read.
StatusBadge currentAlone(const StatusBadge& badge);

/// In points: 40 by 16 with two labels, 22 by 16 with one.
QSize size(const StatusBadge& badge);
QImage wide(const StatusBadge& badge, const QColor& ink, qreal devicePixelRatio = 1);

/// Below this many pixels two labels cannot be read, and the current one is drawn alone.
inline constexpr int smallestSquarePair = 32;
QImage square(const StatusBadge& badge, int pixels);
/// The same with a symbol in place of labels, of whatever colour, `symbolSide` wide and high.
QImage square(const QImage& symbol, int pixels);
int symbolSide(int pixels);

} // namespace hopsel::badge_renderer
