// Draws the status item's badge: the labels of input sources in one ink on nothing.
//
// What is "filled" is ink; letters on it are cut out of it. Stateless.
#pragma once

#include "ui/menubar/status_item_presenter.h"

#include <QColor>
#include <QPixmap>
#include <QSize>

namespace hopsel::badge_renderer {

/// In points: 40 by 16 with two labels, 22 by 16 with one.
QSize size(const StatusBadge& badge);

QPixmap pixmap(const StatusBadge& badge, const QColor& ink, qreal devicePixelRatio);

/// For panels that show square icons: both labels where they can be read, else the current one alone.
QPixmap squarePixmap(const StatusBadge& badge, int side, const QColor& ink);

} // namespace hopsel::badge_renderer
