#include "ui/menubar/badge_renderer.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

namespace hopsel::badge_renderer {

namespace {

enum class Letters { drawn, cutOut };

/// How a badge is laid out, in the painter's units.
struct Shape {
    QRectF outline;
    qreal radius;
    qreal lineWidth; ///< of the outline of a pair
    QFont font;
};

QFont labelFont(int pixelSize) {
    QFont font = QApplication::font();
    font.setPixelSize(pixelSize);
    font.setWeight(QFont::Bold);
    return font;
}

QImage canvas(QSize points, qreal devicePixelRatio) {
    QImage image(points * devicePixelRatio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(devicePixelRatio);
    image.fill(Qt::transparent);
    return image;
}

QPainterPath roundedRect(const QRectF& bounds, qreal radius) {
    QPainterPath path;
    path.addRoundedRect(bounds, radius, radius);
    return path;
}

void drawLabel(QPainter& painter, const QRectF& area, const std::string& label, const QFont& font,
               Letters letters) {
    const QString text = QString::fromStdString(label);
    const QFontMetricsF metrics(font);
    QPainterPath path;
    path.addText(area.center().x() - metrics.horizontalAdvance(text) / 2,
                 area.center().y() - metrics.height() / 2 + metrics.ascent(), font, text);
    if (letters == Letters::cutOut) painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.drawPath(path);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void drawSingle(QPainter& painter, const Shape& shape, const QRectF& area, const std::string& label) {
    painter.drawPath(roundedRect(shape.outline, shape.radius));
    drawLabel(painter, area, label, shape.font, Letters::cutOut);
}

void drawPair(QPainter& painter, const Shape& shape, const StatusBadge& badge) {
    const QPainterPath outline = roundedRect(shape.outline, shape.radius);
    painter.strokePath(outline, QPen(painter.brush(), shape.lineWidth));

    QRectF left = shape.outline;
    left.setWidth(shape.outline.width() / 2);
    const QRectF right = left.translated(left.width(), 0);
    QPainterPath current;
    current.addRect(badge.firstIsCurrent ? left : right);
    painter.drawPath(outline.intersected(current));

    drawLabel(painter, left, badge.first, shape.font,
              badge.firstIsCurrent ? Letters::cutOut : Letters::drawn);
    drawLabel(painter, right, *badge.second, shape.font,
              badge.firstIsCurrent ? Letters::drawn : Letters::cutOut);
}

void prepare(QPainter& painter, const QColor& ink) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
}

/// Of a square badge, in whole pixels.
int edgeWidth(int pixels) { return pixels / 16; }

/// What is cut out of the face shows the black ground, and its edge surrounds it.
QImage onGround(const QImage& face, const QRectF& ground, qreal radius) {
    QImage image = canvas(face.size(), 1);
    QPainter painter(&image);
    prepare(painter, Qt::black);
    painter.drawPath(roundedRect(ground, radius));
    painter.drawImage(0, 0, face);
    return image;
}

} // namespace

StatusBadge currentAlone(const StatusBadge& badge) {
    return StatusBadge::single(!badge.second || badge.firstIsCurrent ? badge.first : *badge.second);
}

QSize size(const StatusBadge& badge) { return {badge.second ? 40 : 22, 16}; }

QImage wide(const StatusBadge& badge, const QColor& ink, qreal devicePixelRatio) {
    QImage image = canvas(size(badge), devicePixelRatio);
    QPainter painter(&image);
    prepare(painter, ink);
    const QRectF bounds(QPointF(0, 0), QSizeF(size(badge)));
    const QRectF outline = bounds.adjusted(0.75, 0.75, -0.75, -0.75);
    if (badge.second)
        drawPair(painter, {outline, outline.height() / 2, 1.5, labelFont(11)}, badge);
    else
        drawSingle(painter, {outline, 4, 0, labelFont(11)}, bounds, badge.first);
    return image;
}

int symbolSide(int pixels) { return pixels - 4 * edgeWidth(pixels); }

QImage square(const StatusBadge& badge, int pixels) {
    QImage face = canvas({pixels, pixels}, 1);
    QPainter painter(&face);
    prepare(painter, Qt::white);
    // Edges at whole pixels are sharp, where every pixel counts.
    const QRectF bounds(0, 0, pixels, pixels);
    const int edge = edgeWidth(pixels);
    if (badge.second && pixels >= smallestSquarePair) {
        const int top = pixels / 8;
        const QRectF ground = bounds.adjusted(0, top, 0, -top);
        const qreal radius = pixels / 5.0, inset = 1.5 * edge;
        drawPair(painter,
                 {ground.adjusted(inset, inset, -inset, -inset), radius - inset, qreal(edge),
                  labelFont(pixels * 12 / 32)},
                 badge);
        return onGround(face, ground, radius);
    }
    const qreal radius = pixels / 4.0;
    drawSingle(painter,
               {bounds.adjusted(edge, edge, -edge, -edge), radius - edge, 0, labelFont(pixels * 11 / 16)},
               bounds, currentAlone(badge).first);
    return onGround(face, bounds, radius);
}

QImage square(const QImage& symbol, int pixels) {
    QImage face = canvas({pixels, pixels}, 1);
    QPainter painter(&face);
    prepare(painter, Qt::white);
    const QRectF bounds(0, 0, pixels, pixels);
    const int edge = edgeWidth(pixels);
    const qreal radius = pixels / 4.0;
    painter.drawPath(roundedRect(bounds.adjusted(edge, edge, -edge, -edge), radius - edge));
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.drawImage(2 * edge, 2 * edge, symbol);
    return onGround(face, bounds, radius);
}

} // namespace hopsel::badge_renderer
