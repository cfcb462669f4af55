#include "platform/macos/menu_bar/menu_bar_item.h"

#include "ui/menubar/badge_renderer.h"

#include <QBuffer>
#include <QByteArray>

namespace hopsel {

namespace {

std::string png(const QImage& image) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes.toStdString();
}

TemplatePicture picture(const StatusBadge& badge) {
    const QSize size = badge_renderer::size(badge);
    TemplatePicture drawn{double(size.width()), double(size.height()), {}};
    for (const int scale : {1, 2}) drawn.pngs.push_back(png(badge_renderer::wide(badge, Qt::black, scale)));
    return drawn;
}

} // namespace

void MenuBarItem::show(const StatusItemAppearance& appearance) {
    if (shown_ == appearance) return;
    shown_ = appearance;
    if (appearance.badge)
        item_->showPicture(picture(*appearance.badge));
    else
        item_->showSymbol(appearance.symbolName, "Hopsel");
}

} // namespace hopsel
