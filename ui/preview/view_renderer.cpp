#include "ui/preview/view_renderer.h"

#include "ui/design/colors.h"

#include <QApplication>
#include <QBuffer>
#include <QImage>
#include <QPainter>

namespace hopsel::view_renderer {

QByteArray png(QWidget& view, QSize size, bool dark) {
    design::useAppearance(dark ? design::Appearance::dark : design::Appearance::light);
    view.setAttribute(Qt::WA_DontShowOnScreen);
    view.resize(size);
    view.show();
    // Views look at their model on a later turn of the loop.
    QCoreApplication::sendPostedEvents();
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    QImage image(size, QImage::Format_RGB32);
    image.fill(QApplication::palette().color(QPalette::Window));
    QPainter painter(&image);
    view.render(&painter, {}, {}, QWidget::DrawChildren);
    painter.end();
    QByteArray data;
    QBuffer buffer(&data);
    if (!image.save(&buffer, "PNG")) return {};
    return data;
}

} // namespace hopsel::view_renderer
