#include "ui/design/sidebar_row.h"

#include "ui/design/accessible_roles.h"
#include "ui/design/focus_ring.h"
#include "ui/design/symbols.h"
#include "ui/design/text.h"

#include <QPainter>

namespace hopsel::design {

namespace {

constexpr int horizontalPadding = 10;
constexpr int verticalPadding = 6;
constexpr int symbolWidth = 18;
constexpr int gap = 8;

} // namespace

SidebarRow::SidebarRow(Kind kind, QString symbol, const QString& title, QWidget* parent)
    : QAbstractButton(parent), symbol_(std::move(symbol)) {
    // Before it is described: a description is kept.
    if (kind == Kind::tab) setAccessibleRole(this, QAccessible::PageTab);
    setText(title);
    setFont(fontOf(TextStyle::body));
    setCheckable(kind == Kind::tab);
    setAutoExclusive(kind == Kind::tab);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
}

QSize SidebarRow::sizeHint() const {
    return {2 * horizontalPadding + scaled(symbolWidth) + gap + fontMetrics().horizontalAdvance(text()),
            fontMetrics().height() + 2 * verticalPadding};
}

void SidebarRow::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isChecked()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(accentGradient(rect()));
        painter.drawRoundedRect(rect(), 8, 8);
    }
    const QColor ink = isChecked() ? QColor(Qt::white) : primary(palette());
    const int side = scaled(symbolWidth);
    painter.drawPixmap(horizontalPadding, (height() - side) / 2,
                       symbolPixmap(symbol_, {side, side}, ink, devicePixelRatioF()));
    painter.setPen(ink);
    painter.drawText(rect().adjusted(horizontalPadding + side + gap, 0, -horizontalPadding, 0),
                     Qt::AlignVCenter | Qt::AlignLeft, text());
    drawFocusRing(painter, *this, 8);
}

Sidebar::Sidebar(QWidget* parent) : QWidget(parent), column_(new QVBoxLayout(this)) {
    setAccessibleRole(this, QAccessible::PageTabList);
    column_->setContentsMargins(10, 10, 10, 10);
    column_->setSpacing(2);
    setFixedWidth(scaled(170));
}

void Sidebar::paintEvent(QPaintEvent* /*event*/) {
    QPainter(this).fillRect(rect(), primary(palette(), 0.035));
}

} // namespace hopsel::design
