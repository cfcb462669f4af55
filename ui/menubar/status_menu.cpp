#include "ui/menubar/status_menu.h"

#include "core/base/overloaded.h"
#include "ui/menubar/menu_builder.h"
#include "ui/settings/design/colors.h"

#include <QPainter>

namespace hopsel::status_menu {

namespace {

QIcon dot(MenuStatusLevel level, const QPalette& palette) {
    QColor fill = design::color(design::Tone::secondary, palette);
    if (level == MenuStatusLevel::ok) fill = design::color(design::Tone::positive, palette);
    if (level == MenuStatusLevel::problem) fill = design::color(design::Tone::problem, palette);
    QIcon icon;
    for (const int side : {16, 22, 32}) {
        QPixmap pixmap(side, side);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(fill);
        painter.drawEllipse(QRectF(side * 0.25, side * 0.25, side * 0.5, side * 0.5));
        painter.end();
        icon.addPixmap(pixmap);
        icon.addPixmap(pixmap, QIcon::Disabled); // the entry is disabled, its colour is not
    }
    return icon;
}

/// An ampersand in a name is no mnemonic.
QString shown(const std::string& text) { return QString::fromStdString(text).replace("&", "&&"); }

} // namespace

void rebuild(QMenu& menu, const MenuState& state, const std::function<void(MenuAction)>& onClick) {
    menu.clear();
    const auto addInert = [&](const QString& text) {
        QAction* entry = menu.addAction(text);
        entry->setEnabled(false);
        return entry;
    };
    const auto addClickable = [&](MenuAction action, const std::string& title) {
        QAction* entry = menu.addAction(shown(title));
        QObject::connect(entry, &QAction::triggered, &menu, [onClick, action] { onClick(action); });
        return entry;
    };
    for (const MenuItemSpec& item : menu_builder::items(state)) {
        std::visit(Overloaded{
                       [&](const menu_item::Toggle& toggle) {
                           QAction* entry = addClickable(toggle.action, toggle.title);
                           entry->setCheckable(true);
                           entry->setChecked(toggle.isOn);
                       },
                       [&](const menu_item::Action& action) { addClickable(action.action, action.title); },
                       [&](const menu_item::Header& header) { addInert(shown(header.text)); },
                       [&](const menu_item::Info& info) { addInert("    " + shown(info.text)); },
                       [&](const menu_item::Status& status) {
                           addInert(shown(status.text))->setIcon(dot(status.level, menu.palette()));
                       },
                       [&](const menu_item::Separator&) { menu.addSeparator(); },
                   },
                   item);
    }
}

} // namespace hopsel::status_menu
