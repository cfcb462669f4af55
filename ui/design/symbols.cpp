#include "ui/design/symbols.h"

#include "ui/design/text.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QSvgRenderer>

// Needed because the drawings are in a static library; the macro works outside of every namespace only.
static void loadDrawings() { Q_INIT_RESOURCE(symbols); }

namespace hopsel::design {

namespace {

class SymbolIconEngine final : public QIconEngine {
  public:
    SymbolIconEngine(QString name, const QColor& color) : name_(std::move(name)), color_(color) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
        painter->drawPixmap(rect,
                            scaledPixmap(rect.size(), mode, state, painter->device()->devicePixelRatioF()));
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        return scaledPixmap(size, mode, state, 1);
    }
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode /*mode*/, QIcon::State /*state*/,
                         qreal scale) override {
        return symbolPixmap(name_, size, color_, scale);
    }
    QIconEngine* clone() const override { return new SymbolIconEngine(name_, color_); }

  private:
    QString name_;
    QColor color_;
};

} // namespace

QPixmap symbolPixmap(const QString& name, QSize size, const QColor& color, qreal devicePixelRatio) {
    [[maybe_unused]] static const bool isLoaded = (loadDrawings(), true);
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

QIcon symbolIcon(const QString& name, const QColor& color) {
    return QIcon(new SymbolIconEngine(name, color));
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

Picture::Picture(const QString& resource, int points, QWidget* parent) : QWidget(parent), icon_(resource) {
    setFixedSize(points, points);
}

void Picture::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    icon_.paint(&painter, rect());
}

} // namespace hopsel::design
