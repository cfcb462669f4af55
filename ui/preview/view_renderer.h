// Draws a view into a picture, without showing it.
#pragma once

#include <QByteArray>
#include <QSize>
#include <QWidget>

namespace hopsel::view_renderer {

/// PNG data at one pixel a point, on the window background of the appearance; empty if it cannot be drawn.
/// The view keeps the size.
QByteArray png(QWidget& view, QSize size, bool dark);

} // namespace hopsel::view_renderer
