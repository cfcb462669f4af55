#include "platform/linux/tray/tray_item.h"

#include "ui/design/symbols.h"
#include "ui/menubar/badge_renderer.h"

#include <QCursor>

namespace hopsel {

namespace {

/// More than a person's sources make; who has more has them drawn again.
constexpr std::size_t mostPictures = 64;

} // namespace

TrayItem::TrayItem(TrayKind kind, StatusMenu& menu) : kind_(kind) {
    QObject::connect(&icon_, &QSystemTrayIcon::activated, &icon_,
                     [&menu](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::MiddleClick)
                             return menu.perform(MenuAction::toggleEngine);
                         if (reason != QSystemTrayIcon::Trigger && reason != QSystemTrayIcon::Context) return;
                         // With one kind of panel the toolkit has opened it for the right button already.
                         if (!menu.isVisible()) menu.popup(QCursor::pos());
                     });
    icon_.setContextMenu(&menu);
}

void TrayItem::show(const StatusItemAppearance& appearance) {
    // Every change crosses the bus and makes the panel draw: only what is new.
    if (shown_ == appearance) return;
    icon_.setIcon(picture(appearance));
    shown_ = appearance;
    if (!icon_.isVisible()) icon_.show(); // not before there is something to see
}

void TrayItem::setName(const std::string& name) {
    const QString toolTip = QString::fromStdString(name);
    if (icon_.toolTip() != toolTip) icon_.setToolTip(toolTip);
}

const QIcon& TrayItem::picture(const StatusItemAppearance& appearance) {
    for (const auto& [known, icon] : pictures_)
        if (known == appearance) return icon;
    if (pictures_.size() == mostPictures) pictures_.clear();
    return pictures_.emplace_back(appearance, drawn(appearance)).second;
}

QIcon TrayItem::drawn(const StatusItemAppearance& appearance) const {
    std::optional<StatusBadge> badge = appearance.badge;
    // Some panels take the largest picture and shrink it to their height: two labels would be a blur.
    if (badge && kind_ == TrayKind::statusNotifier) badge = badge_renderer::currentAlone(*badge);
    QIcon icon;
    for (const int pixels : {16, 22, 24, 32, 48, 64}) {
        const int side = badge_renderer::symbolSide(pixels);
        icon.addPixmap(QPixmap::fromImage(
            badge ? badge_renderer::square(*badge, pixels)
                  : badge_renderer::square(design::symbolPixmap(QString::fromStdString(appearance.symbolName),
                                                                {side, side}, Qt::black, 1)
                                               .toImage(),
                                           pixels)));
    }
    return icon;
}

} // namespace hopsel
