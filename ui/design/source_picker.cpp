#include "ui/design/source_picker.h"

#include "ui/design/focus_ring.h"
#include "ui/design/symbols.h"
#include "ui/design/text.h"

#include <QPainter>
#include <QWheelEvent>
#include <algorithm>

namespace hopsel::design {

namespace {

constexpr int padding = 10;
constexpr int arrowWidth = 24;
constexpr int widestText = 220;

} // namespace

SourcePicker::SourcePicker(const QString& accessibleName, QWidget* parent) : QComboBox(parent) {
    setAccessibleName(accessibleName);
    setAccessibleDescription(accessibleName); // read out where a list of choices is named by what is chosen
    setFont(fontOf(TextStyle::body));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    connect(this, &QComboBox::activated, this, [this](int index) {
        if (onPicked) onPicked(itemData(index).toString().toStdString());
    });
}

void SourcePicker::show(const std::vector<InputSourceInfo>& offered,
                        const std::optional<std::string>& chosenID, const QString& fallbackName) {
    const QSignalBlocker quiet(this);
    clear();
    for (const InputSourceInfo& source : offered)
        addItem(QString::fromStdString(source.name), QString::fromStdString(source.id));
    setCurrentIndex(chosenID ? findData(QString::fromStdString(*chosenID)) : -1);
    setPlaceholderText(fallbackName);
    setToolTip(currentIndex() >= 0 ? currentText() : fallbackName);
    updateGeometry();
}

QSize SourcePicker::sizeHint() const {
    int width = fontMetrics().horizontalAdvance(placeholderText());
    for (int i = 0; i < count(); ++i) width = std::max(width, fontMetrics().horizontalAdvance(itemText(i)));
    width = std::min(width, scaled(widestText)) + padding + scaled(arrowWidth);
    return {std::max(width, scaled(110)), fontMetrics().height() + 10};
}

QSize SourcePicker::minimumSizeHint() const { return {scaled(90), sizeHint().height()}; }

void SourcePicker::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? 1 : 0.4);
    painter.setPen(Qt::NoPen);
    painter.setBrush(primary(palette(), 0.07));
    painter.drawRoundedRect(rect(), 7, 7);
    const bool isChosen = currentIndex() >= 0;
    const QString text = isChosen ? currentText() : placeholderText();
    const QRect textRect = rect().adjusted(padding, 0, -scaled(arrowWidth), 0);
    painter.setPen(isChosen ? primary(palette()) : color(Tone::secondary, palette()));
    painter.drawText(textRect, Qt::AlignVCenter | Qt::AlignLeft,
                     fontMetrics().elidedText(text, Qt::ElideMiddle, textRect.width()));
    const int side = scaled(14);
    painter.drawPixmap(width() - side - 6, (height() - side) / 2,
                       symbolPixmap("chevron.up.chevron.down", {side, side},
                                    color(Tone::secondary, palette()), devicePixelRatioF()));
    painter.setOpacity(1);
    drawFocusRing(painter, *this, 7);
}

void SourcePicker::wheelEvent(QWheelEvent* event) { event->ignore(); }

} // namespace hopsel::design
