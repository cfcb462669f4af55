#include "ui/design/focus_ring.h"

#include "ui/design/colors.h"

namespace hopsel::design {

void drawFocusRing(QPainter& painter, const QWidget& widget, qreal radius) {
    if (!widget.hasFocus() || !widget.window()->testAttribute(Qt::WA_KeyboardFocusChange)) return;
    constexpr qreal width = 2;
    painter.setBrush(Qt::NoBrush);
    // Two colours, so that it can be seen on the accent gradient too.
    painter.setPen(QPen(widget.palette().color(QPalette::Window), width * 2));
    const QRectF bounds = QRectF(widget.rect()).adjusted(width, width, -width, -width);
    painter.drawRoundedRect(bounds, radius - 1, radius - 1);
    painter.setPen(QPen(color(Tone::accent, widget.palette()), width));
    painter.drawRoundedRect(QRectF(widget.rect()).adjusted(1, 1, -1, -1), radius, radius);
}

} // namespace hopsel::design
