#include "platform/linux/tray/tray_item.h"

#include "ui/design/colors.h"
#include "ui/design/symbols.h"
#include "ui/menubar/badge_renderer.h"

#include <QApplication>
#include <QCursor>

namespace hopsel {

TrayItem::TrayItem(TrayKind kind, QMenu& menu) : kind_(kind) {
    QObject::connect(&icon_, &QSystemTrayIcon::activated, &icon_,
                     [&menu](QSystemTrayIcon::ActivationReason reason) {
                         if (reason != QSystemTrayIcon::Trigger && reason != QSystemTrayIcon::Context) return;
                         // With one kind of panel the toolkit has opened it for the right button already.
                         if (!menu.isVisible()) menu.popup(QCursor::pos());
                     });
    icon_.setContextMenu(&menu);
}

QColor TrayItem::likelyInk() {
    const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':');
    for (const char* desktop : {"GNOME", "Unity", "XFCE", "X-Cinnamon", "Budgie"}) {
        if (desktops.contains(QLatin1String(desktop), Qt::CaseInsensitive)) return Qt::white;
    }
    return design::isDark(QApplication::palette()) ? Qt::white : Qt::black;
}

void TrayItem::show(const StatusItemAppearance& appearance) {
    // Every change crosses the bus and makes the panel draw: only what is new.
    const QColor ink = likelyInk();
    if (shown_ == appearance && shownInk_ == ink) return;
    icon_.setIcon(drawn(appearance, ink));
    shown_ = appearance;
    shownInk_ = ink;
    if (!icon_.isVisible()) icon_.show(); // not before there is something to see
}

void TrayItem::setName(const std::string& name) {
    const QString toolTip = QString::fromStdString(name);
    if (icon_.toolTip() != toolTip) icon_.setToolTip(toolTip);
}

QIcon TrayItem::drawn(const StatusItemAppearance& appearance, const QColor& ink) const {
    std::optional<StatusBadge> badge = appearance.badge;
    // Some panels take the largest picture and shrink it to their height: two labels would be a blur.
    if (badge && kind_ == TrayKind::statusNotifier) badge = badge_renderer::currentAlone(*badge);
    QIcon icon;
    for (const int pixels : {16, 22, 24, 32, 48, 64}) {
        icon.addPixmap(badge ? QPixmap::fromImage(badge_renderer::square(*badge, pixels, ink))
                             : design::symbolPixmap(QString::fromStdString(appearance.symbolName),
                                                    {pixels, pixels}, ink, 1));
    }
    return icon;
}

} // namespace hopsel
