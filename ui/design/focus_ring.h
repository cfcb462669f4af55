// The ring around the control that has the keyboard.
#pragma once

#include <QPainter>
#include <QWidget>

namespace hopsel::design {

/// Drawn only when the widget has the focus and its window shows the focus, that is after Tab was used.
void drawFocusRing(QPainter& painter, const QWidget& widget, qreal radius);

} // namespace hopsel::design
