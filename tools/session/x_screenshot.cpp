#include "session/x_screenshot.h"

#include <QImage>
#include <QString>
#include <stdexcept>
#include <thread>

namespace hopsel::session {

namespace {

using namespace std::chrono_literals;

QImage lookAt(XDisplay& display) {
    const xcb_screen_t& screen = display.screen();
    const XOwned<xcb_get_image_reply_t> reply(
        xcb_get_image_reply(display.get(),
                            xcb_get_image(display.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, screen.root, 0, 0,
                                          screen.width_in_pixels, screen.height_in_pixels, ~std::uint32_t(0)),
                            nullptr));
    const auto needed = std::size_t(4) * screen.width_in_pixels * screen.height_in_pixels;
    if (!reply || reply->depth != 24 || std::size_t(xcb_get_image_data_length(reply.get())) < needed)
        throw std::runtime_error("the X server gives no picture of its screen");
    return QImage(xcb_get_image_data(reply.get()), screen.width_in_pixels, screen.height_in_pixels,
                  QImage::Format_RGB32)
        .copy();
}

} // namespace

void XScreenshots::save(const std::filesystem::path& path) {
    const Deadline deadline(2s);
    QImage image = lookAt(display_);
    while (!deadline.hasPassed()) {
        std::this_thread::sleep_for(150ms); // nothing tells when somebody else has finished drawing
        QImage next = lookAt(display_);
        if (next == image) break;
        image = std::move(next);
    }
    if (!image.save(QString::fromStdString(path.string()), "PNG"))
        throw std::runtime_error("cannot write " + path.string());
}

} // namespace hopsel::session
