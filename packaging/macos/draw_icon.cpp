// draw_icon <drawing.svg> <pixels> <out.png>: a tool of the build, which draws the icon in one size.
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
    const int pixels = argc == 4 ? std::atoi(argv[2]) : 0;
    if (pixels <= 0 || pixels > 4096) {
        std::fputs("draw_icon <drawing.svg> <pixels> <out.png>\n", stderr);
        return EXIT_FAILURE;
    }
    QSvgRenderer drawing(QString::fromLocal8Bit(argv[1]));
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawing.render(&painter);
    painter.end();
    return drawing.isValid() && image.save(QString::fromLocal8Bit(argv[3])) ? EXIT_SUCCESS : EXIT_FAILURE;
}
