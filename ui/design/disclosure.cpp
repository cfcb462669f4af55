#include "ui/design/disclosure.h"

#include "ui/design/focus_ring.h"
#include "ui/design/symbols.h"
#include "ui/design/text.h"

#include <QKeyEvent>
#include <QPainter>

namespace hopsel::design {

namespace {

constexpr int arrowSide = 12;
constexpr int gap = 6;
constexpr int padding = 4; // above and below

/// Where the text begins.
int indent() { return scaled(arrowSide) + gap; }

} // namespace

Disclosure::Disclosure(const QString& title, QWidget* parent) : QAbstractButton(parent) {
    setText(title);
    setFont(fontOf(TextStyle::headline));
    setCheckable(true);
    setFocusPolicy(Qt::StrongFocus);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

QSize Disclosure::sizeHint() const {
    return {indent() + fontMetrics().horizontalAdvance(text()), fontMetrics().height() + 2 * padding};
}

QSize Disclosure::minimumSizeHint() const { return {scaled(120), sizeHint().height()}; }

int Disclosure::heightForWidth(int width) const {
    const QRect space(0, 0, width - indent(), QWIDGETSIZE_MAX);
    return fontMetrics().boundingRect(space, Qt::TextWordWrap, text()).height() + 2 * padding;
}

void Disclosure::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const int side = scaled(arrowSide);
    painter.drawPixmap(0, padding + (fontMetrics().height() - side) / 2,
                       symbolPixmap(isChecked() ? "chevron.down" : "chevron.right", {side, side},
                                    color(Tone::secondary, palette()), devicePixelRatioF()));
    painter.setPen(primary(palette()));
    painter.drawText(rect().adjusted(indent(), padding, 0, -padding), Qt::TextWordWrap, text());
    drawFocusRing(painter, *this, 6);
}

void Disclosure::keyPressEvent(QKeyEvent* event) {
    const bool isOpening = event->key() == Qt::Key_Right;
    if (isOpening || event->key() == Qt::Key_Left)
        setChecked(isOpening);
    else
        QAbstractButton::keyPressEvent(event);
}

} // namespace hopsel::design
