#include "ui/menubar/menu_label.h"

#include "core/base/overloaded.h"
#include "ui/design/colors.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QPainter>
#include <cmath>

namespace hopsel {

namespace {

// Points, as the system's menus have them.
constexpr int headerIndent = 21;
constexpr int lineIndent = 29; // below a header's text
constexpr int rightMargin = 16;
constexpr int spareWidth = 8;
constexpr int verticalMargin = 3;

QFont fontOf(const MenuItemSpec& line) {
    QFont font = QApplication::font("QMenu");
    if (std::holds_alternative<menu_item::Header>(line)) {
        font.setPixelSize(11);
        font.setWeight(QFont::DemiBold);
    } else if (std::holds_alternative<menu_item::Status>(line)) {
        font.setPixelSize(13);
        font.setWeight(QFont::Medium);
    }
    return font;
}

/// The system's own green and red.
QColor statusColor(MenuStatusLevel level, const QPalette& palette) {
    const bool dark = design::isDark(palette);
    switch (level) {
    case MenuStatusLevel::ok: return dark ? QColor(0x32, 0xD7, 0x4B) : QColor(0x28, 0xCD, 0x41);
    case MenuStatusLevel::problem: return dark ? QColor(0xFF, 0x45, 0x3A) : QColor(0xFF, 0x3B, 0x30);
    case MenuStatusLevel::neutral: break;
    }
    return design::color(design::Tone::secondary, palette);
}

} // namespace

MenuLabel::MenuLabel(MenuItemSpec line) : line_(std::move(line)) { setFont(fontOf(line_)); }

void MenuLabel::setLine(MenuItemSpec line, const QString& text) {
    line_ = std::move(line);
    text_ = text;
    setAccessibleName(text);
    updateGeometry();
    resize(sizeHint());
    update();
}

QSize MenuLabel::sizeHint() const {
    const QFontMetricsF metrics(font());
    const int width = static_cast<int>(std::ceil(metrics.horizontalAdvance(text_))) + spareWidth;
    const int height = static_cast<int>(std::ceil(metrics.height()));
    return {indent() + width + rightMargin, height + 2 * verticalMargin};
}

void MenuLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setPen(ink());
    const QRect area = rect().adjusted(indent(), verticalMargin, 0, -verticalMargin);
    painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text_);
}

QColor MenuLabel::ink() const {
    const QPalette colors = QApplication::palette();
    return std::visit(Overloaded{
                          [](const menu_item::Header&) { return design::blue(); },
                          [&](const menu_item::Status& status) { return statusColor(status.level, colors); },
                          [&](const auto&) { return design::color(design::Tone::secondary, colors); },
                      },
                      line_);
}

int MenuLabel::indent() const {
    return std::holds_alternative<menu_item::Header>(line_) ? headerIndent : lineIndent;
}

} // namespace hopsel
