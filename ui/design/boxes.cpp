#include "ui/design/boxes.h"

#include "ui/design/symbols.h"

#include <QHBoxLayout>
#include <QPainter>

namespace hopsel::design {

namespace {

/// A rounded rectangle of its tone's colour behind its contents.
class Ground final : public QWidget {
  public:
    Ground(qreal radius, Tone tone, qreal opacity) : radius_(radius), tone_(tone), opacity_(opacity) {}

  protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        QColor fill = color(tone_, palette());
        fill.setAlphaF(static_cast<float>(opacity_));
        painter.setBrush(fill);
        painter.drawRoundedRect(rect(), radius_, radius_);
    }

  private:
    qreal radius_;
    Tone tone_;
    qreal opacity_;
};

} // namespace

Card::Card(int padding, QWidget* parent) : QWidget(parent), column_(new QVBoxLayout(this)) {
    column_->setContentsMargins(padding, padding, padding, padding);
    column_->setSpacing(8);
    // As high as the contents are at the width that it gets, which may be less than at the width they want.
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void Card::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(primary(palette(), 0.08));
    painter.setBrush(primary(palette(), 0.045));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 12, 12);
}

Divider::Divider(Qt::Orientation orientation, QWidget* parent) : QWidget(parent) {
    if (orientation == Qt::Horizontal)
        setFixedHeight(1);
    else
        setFixedWidth(1);
}

void Divider::paintEvent(QPaintEvent* /*event*/) { QPainter(this).fillRect(rect(), primary(palette(), 0.1)); }

Plate::Plate(const QString& text, Kind kind, Tone tone, QWidget* parent)
    : QWidget(parent),
      kind_(kind),
      tone_(tone),
      text_(new Text(text, kind == Kind::tag ? TextStyle::caption : TextStyle::key, tone, this)) {
    auto* layout = new QHBoxLayout(this);
    if (kind == Kind::keyCap)
        layout->setContentsMargins(10, 4, 10, 4);
    else if (kind == Kind::tag)
        layout->setContentsMargins(7, 2, 7, 2);
    else
        layout->setContentsMargins(0, 0, 0, 0);
    text_->setAlignment(Qt::AlignCenter);
    if (kind == Kind::keyCap) text_->elided();
    layout->addWidget(text_);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize Plate::sizeHint() const {
    const QSize natural = layout()->sizeHint();
    if (kind_ != Kind::sourceLabel) return natural;
    return natural.expandedTo({scaled(28), scaled(22)});
}

QSize Plate::minimumSizeHint() const { return kind_ == Kind::keyCap ? layout()->minimumSize() : sizeHint(); }

void Plate::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    QColor fill = color(tone_, palette());
    fill.setAlphaF(kind_ == Kind::tag ? 0.12F : 0.1F);
    painter.setBrush(fill);
    const qreal radius = kind_ == Kind::keyCap ? 6 : 5;
    painter.drawRoundedRect(rect(), radius, radius);
}

QWidget* messageLine(const QString& symbol, const QString& text, Tone symbolTone, Tone textTone,
                     TextStyle style) {
    auto* line = new QWidget;
    auto* row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    row->addWidget(new Symbol(symbol, 15, symbolTone), 0, Qt::AlignTop);
    row->addWidget((new Text(text, style, textTone))->wrapped(), 1);
    return line;
}

QWidget* banner(const QString& symbol, const QString& text, QWidget* more) {
    auto* ground = new Ground(8, Tone::warning, 0.12);
    auto* column = new QVBoxLayout(ground);
    column->setContentsMargins(10, 10, 10, 10);
    column->addWidget(messageLine(symbol, text, Tone::warning));
    if (more != nullptr) column->addWidget(more);
    return ground;
}

void clear(QLayout* layout) {
    while (QLayoutItem* item = layout->takeAt(0)) {
        if (QWidget* widget = item->widget()) {
            widget->hide(); // at once, also while one of its own signals is being handled
            widget->deleteLater();
        }
        if (QLayout* nested = item->layout()) clear(nested);
        delete item;
    }
}

} // namespace hopsel::design
