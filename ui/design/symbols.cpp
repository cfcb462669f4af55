#include "ui/design/symbols.h"

#include "ui/design/text.h"

#include <QApplication>
#include <QPainter>
#include <QSvgRenderer>

// Needed because the drawings are in a static library; the macro works outside of every namespace only.
static void loadDrawings() { Q_INIT_RESOURCE(symbols); }

namespace hopsel::design {

namespace {

void loadDrawingsOnce() { [[maybe_unused]] static const bool isLoaded = (loadDrawings(), true); }

} // namespace

QPixmap symbolPixmap(const QString& name, QSize size, const QColor& color, qreal devicePixelRatio) {
    loadDrawingsOnce();
    QPixmap pixmap(size * devicePixelRatio);
    pixmap.setDevicePixelRatio(devicePixelRatio);
    pixmap.fill(Qt::transparent);
    QSvgRenderer renderer(":/symbols/" + name + ".svg");
    QPainter painter(&pixmap);
    const QRectF bounds(QPointF(0, 0), QSizeF(size));
    renderer.render(&painter, bounds);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(bounds, color);
    return pixmap;
}

Symbol::Symbol(QString name, int points, Tone tone, QWidget* parent)
    : QWidget(parent), name_(std::move(name)), points_(points), tone_(tone) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize Symbol::sizeHint() const { return {scaled(points_), scaled(points_)}; }

void Symbol::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.drawPixmap(
        0, 0, symbolPixmap(name_, size(), color(tone_, QApplication::palette()), devicePixelRatioF()));
}

namespace {

/// The colours of text are too dull for a small light, whose meaning the text beside it repeats.
QColor light(Tone tone, const QPalette& palette) {
    switch (tone) {
    case Tone::positive: return {0x2E, 0xBD, 0x53};
    case Tone::warning: return {0xFB, 0x93, 0x0D};
    case Tone::problem: return {0xF5, 0x40, 0x36};
    default: return color(tone, palette);
    }
}

} // namespace

Dot::Dot(Tone tone, QWidget* parent) : QWidget(parent), tone_(tone) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void Dot::setTone(Tone tone) {
    tone_ = tone;
    update();
}

QSize Dot::sizeHint() const { return {scaled(10), scaled(10)}; }

void Dot::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(light(tone_, QApplication::palette()));
    painter.drawEllipse(rect());
}

QIcon applicationIcon() {
    loadDrawingsOnce();
    return QIcon(":/hopsel/hopsel.svg");
}

Picture::Picture(const QIcon& icon, int points, QWidget* parent) : QWidget(parent), icon_(icon) {
    setFixedSize(points, points);
}

void Picture::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    icon_.paint(&painter, rect());
}

} // namespace hopsel::design
