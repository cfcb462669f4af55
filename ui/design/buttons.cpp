#include "ui/design/buttons.h"

#include "ui/design/colors.h"
#include "ui/design/focus_ring.h"
#include "ui/design/text.h"

#include <QPainter>
#include <algorithm>

namespace hopsel::design {

namespace {

struct Look {
    TextStyle text;
    int horizontalPadding;
    int verticalPadding;
    qreal radius;
};

Look look(Button::Kind kind) {
    switch (kind) {
    case Button::Kind::primary: return {TextStyle::headline, 16, 8, 9};
    case Button::Kind::secondary: return {TextStyle::key, 14, 7, 9};
    case Button::Kind::borderless: return {TextStyle::body, 6, 4, 6};
    case Button::Kind::keyCap: return {TextStyle::key, 10, 4, 6};
    }
    return {TextStyle::body, 0, 0, 0};
}

} // namespace

Button::Button(const QString& text, Kind kind, QWidget* parent) : QPushButton(text, parent), kind_(kind) {
    setFont(fontOf(look(kind).text));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setCursor(Qt::ArrowCursor);
    setAutoDefault(true); // Return presses the button that has the keyboard, as Space does
}

QSize Button::sizeHint() const {
    const QSize text = fontMetrics().size(Qt::TextShowMnemonic, this->text());
    return {text.width() + 2 * look(kind_).horizontalPadding,
            text.height() + 2 * look(kind_).verticalPadding};
}

QSize Button::minimumSizeHint() const {
    const QSize whole = sizeHint();
    if (kind_ != Kind::keyCap) return whole;
    return {std::min(whole.width(), scaled(60)), whole.height()};
}

void Button::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF bounds = rect();
    const qreal radius = look(kind_).radius;
    QColor ink = primary(palette());
    painter.setPen(Qt::NoPen);
    painter.setOpacity(isEnabled() ? 1 : 0.4);
    switch (kind_) {
    case Kind::primary:
        if (isEnabled() && isDown()) painter.setOpacity(0.8);
        painter.setBrush(accentGradient(bounds));
        painter.drawRoundedRect(bounds, radius, radius);
        ink = Qt::white;
        break;
    case Kind::secondary:
        painter.setBrush(primary(palette(), isDown() ? 0.14 : 0.07));
        painter.drawRoundedRect(bounds, radius, radius);
        break;
    case Kind::keyCap:
        painter.setBrush(primary(palette(), isDown() ? 0.16 : 0.1));
        painter.drawRoundedRect(bounds, radius, radius);
        break;
    case Kind::borderless: ink = isDown() ? primary(palette()) : color(Tone::secondary, palette()); break;
    }
    painter.setPen(ink);
    const int room = width() - 2 * look(kind_).horizontalPadding;
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextShowMnemonic,
                     kind_ == Kind::keyCap ? fontMetrics().elidedText(text(), Qt::ElideMiddle, room)
                                           : text());
    painter.setOpacity(1);
    drawFocusRing(painter, *this, radius);
}

Switch::Switch(const QString& accessibleName, QWidget* parent) : QCheckBox(parent) {
    setAccessibleName(accessibleName);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize Switch::sizeHint() const { return {scaled(38), scaled(22)}; }

void Switch::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? 1 : 0.4);
    painter.setPen(Qt::NoPen);
    const QRectF track = QRectF(rect()).adjusted(1, 1, -1, -1);
    const qreal radius = track.height() / 2;
    if (isChecked())
        painter.setBrush(blue());
    else
        painter.setBrush(primary(palette(), 0.5)); // 3 to 1 on a card, and so is the knob on it
    painter.drawRoundedRect(track, radius, radius);
    const qreal diameter = track.height() - 4;
    const qreal left = isChecked() ? track.right() - 2 - diameter : track.left() + 2;
    painter.setBrush(Qt::white);
    painter.drawEllipse(QRectF(left, track.top() + 2, diameter, diameter));
    painter.setOpacity(1);
    drawFocusRing(painter, *this, radius);
}

} // namespace hopsel::design
