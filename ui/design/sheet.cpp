#include "ui/design/sheet.h"

#include "ui/design/accessible_roles.h"
#include "ui/design/colors.h"
#include "ui/design/text.h"

#include <QContextMenuEvent>
#include <QHideEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <utility>

namespace hopsel::design {

namespace {

constexpr int smallestMargin = 16;
constexpr qreal radius = 12;

} // namespace

Sheet::Sheet(QWidget* contents, QWidget* window) : QWidget(window), contents_(contents) {
    contents->setParent(this);
    setAccessibleRole(this, QAccessible::Dialog);
    setAccessibleName(contents->accessibleName());
    window->installEventFilter(this);
    arrange();
    raise();
    show();
    disableWhatIsBeneath();
}

// A screen reader presses buttons without a click.
void Sheet::disableWhatIsBeneath() {
    for (QWidget* sibling : parentWidget()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (sibling == this || sibling->isWindow() || !sibling->isEnabled()) continue;
        sibling->setEnabled(false);
        beneath_.emplace_back(sibling);
    }
}

void Sheet::enableWhatIsBeneath() {
    for (const QPointer<QWidget>& widget : std::exchange(beneath_, {}))
        if (widget) widget->setEnabled(true);
}

void Sheet::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    if (!event->spontaneous()) enableWhatIsBeneath();
}

void Sheet::arrange() {
    setGeometry(parentWidget()->rect());
    const int width =
        std::max(0, std::min(contents_->sizeHint().width(), this->width() - 2 * smallestMargin));
    const int wanted =
        contents_->hasHeightForWidth() ? contents_->heightForWidth(width) : contents_->sizeHint().height();
    const int height = std::max(0, std::min(wanted, this->height() - 2 * smallestMargin));
    // From above, so that what is in it stays where it is when it grows.
    const int top = std::min(scaled(64), (this->height() - height) / 2);
    contents_->setGeometry((this->width() - width) / 2, top, width, height);
    update();
}

bool Sheet::event(QEvent* event) {
    if (event->type() == QEvent::LayoutRequest) arrange(); // the contents want another size
    return QWidget::event(event);
}

bool Sheet::eventFilter(QObject* watched, QEvent* event) {
    const bool passedOn = QWidget::eventFilter(watched, event);
    if (watched == parentWidget() && event->type() == QEvent::Resize) arrange();
    return passedOn;
}

bool Sheet::takesTab(QWidget* widget) const {
    return isAncestorOf(widget) && (widget->focusPolicy() & Qt::TabFocus) == Qt::TabFocus &&
           widget->isVisible() && widget->isEnabled();
}

bool Sheet::focusNextPrevChild(bool next) {
    QWidget* const start = isAncestorOf(window()->focusWidget()) ? window()->focusWidget() : this;
    QWidget* widget = start;
    do {
        widget = next ? widget->nextInFocusChain() : widget->previousInFocusChain();
    } while (widget != start && !takesTab(widget));
    if (takesTab(widget)) widget->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

void Sheet::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), QColor(0, 0, 0, isDark(palette()) ? 0x80 : 0x48));
    const QRectF ground = contents_->geometry();
    painter.setPen(Qt::NoPen);
    for (int step = 12; step > 0; --step) { // a soft shadow
        painter.setBrush(QColor(0, 0, 0, 5));
        painter.drawRoundedRect(ground.adjusted(-step, -step + 4, step, step + 4), radius + step,
                                radius + step);
    }
    painter.setBrush(palette().color(QPalette::Base));
    painter.setPen(primary(palette(), 0.12));
    painter.drawRoundedRect(ground.adjusted(-0.5, -0.5, 0.5, 0.5), radius, radius);
}

void Sheet::mousePressEvent(QMouseEvent* event) { event->accept(); }
void Sheet::mouseReleaseEvent(QMouseEvent* event) { event->accept(); }
void Sheet::mouseDoubleClickEvent(QMouseEvent* event) { event->accept(); }
void Sheet::wheelEvent(QWheelEvent* event) { event->accept(); }
void Sheet::contextMenuEvent(QContextMenuEvent* event) { event->accept(); }

} // namespace hopsel::design
