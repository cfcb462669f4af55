// Draws the badge with the labels of input sources, the current one filled with its letter cut out. Pure.
//
// One ink on transparent. The panels of this desktop tint nothing, so the caller names the ink; and most have
// room for a square only, which is what `square` is for.
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
QImage square(const StatusBadge& badge, int pixels, const QColor& ink);

} // namespace hopsel::badge_renderer
