#include "ui/menubar/badge_renderer.h"

#include <QApplication>
#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

namespace hopsel::badge_renderer {

namespace {

constexpr qreal height = 16;
constexpr qreal inset = 0.75;
constexpr qreal outlineWidth = 1.5;
constexpr qreal letterSize = 11;
/// The smallest square in which two labels can be read.
constexpr int smallestPair = 32;

QFont letterFont() {
    QFont font = QApplication::font();
    font.setPixelSize(static_cast<int>(letterSize));
    font.setWeight(QFont::Bold);
    return font;
}

void drawLabel(QPainter& painter, const std::string& label, const QRectF& bounds, bool isKnockedOut) {
    const QString text = QString::fromStdString(label);
    const QFontMetricsF metrics(painter.font());
    const QSizeF size(metrics.horizontalAdvance(text), metrics.height());
    const QPointF origin = bounds.center() - QPointF(size.width() / 2, size.height() / 2);
    painter.setCompositionMode(isKnockedOut ? QPainter::CompositionMode_DestinationOut
                                            : QPainter::CompositionMode_SourceOver);
    painter.drawText(QPointF(origin.x(), origin.y() + metrics.ascent()), text);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void drawSingle(QPainter& painter, const std::string& label, const QRectF& bounds, const QColor& ink) {
    QPainterPath outline;
    outline.addRoundedRect(bounds.adjusted(inset, inset, -inset, -inset), 4, 4);
    painter.fillPath(outline, ink);
    drawLabel(painter, label, bounds, true);
}

void drawPair(QPainter& painter, const StatusBadge& badge, const QRectF& bounds, const QColor& ink) {
    const QRectF inner = bounds.adjusted(inset, inset, -inset, -inset);
    QPainterPath outline;
    outline.addRoundedRect(inner, inner.height() / 2, inner.height() / 2);
    painter.strokePath(outline, QPen(ink, outlineWidth));
    const QRectF left(inner.topLeft(), QSizeF(inner.width() / 2, inner.height()));
    const QRectF right = left.translated(left.width(), 0);
    painter.save();
    painter.setClipPath(outline);
    painter.fillRect(badge.firstIsCurrent ? left : right, ink);
    painter.restore();
    drawLabel(painter, badge.first, left, badge.firstIsCurrent);
    drawLabel(painter, *badge.second, right, !badge.firstIsCurrent);
}

/// An empty picture with a painter in points, ready for the badge.
template <class Draw>
QPixmap drawn(const QSize& pixels, qreal scale, const QColor& ink, Draw draw) {
    QPixmap pixmap(pixels);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.scale(scale, scale);
    painter.setFont(letterFont());
    painter.setPen(ink);
    draw(painter);
    return pixmap;
}

} // namespace

QSize size(const StatusBadge& badge) { return {badge.second ? 40 : 22, static_cast<int>(height)}; }

QPixmap pixmap(const StatusBadge& badge, const QColor& ink, qreal devicePixelRatio) {
    const QRectF bounds(QPointF(), QSizeF(size(badge)));
    QPixmap picture = drawn(size(badge) * devicePixelRatio, devicePixelRatio, ink, [&](QPainter& painter) {
        if (badge.second)
            drawPair(painter, badge, bounds, ink);
        else
            drawSingle(painter, badge.first, bounds, ink);
    });
    picture.setDevicePixelRatio(devicePixelRatio);
    return picture;
}

QPixmap squarePixmap(const StatusBadge& badge, int side, const QColor& ink) {
    const QSize square(side, side);
    if (badge.second && side >= smallestPair) {
        const qreal scale = side / 40.0;
        return drawn(square, scale, ink, [&](QPainter& painter) {
            drawPair(painter, badge, QRectF(0, (40 - height) / 2, 40, height), ink);
        });
    }
    // A label alone fills the square; it is drawn as large as the outline allows.
    const std::string& current = badge.firstIsCurrent || !badge.second ? badge.first : *badge.second;
    return drawn(square, side / height, ink,
                 [&](QPainter& painter) { drawSingle(painter, current, QRectF(0, 0, height, height), ink); });
}

} // namespace hopsel::badge_renderer
