#include "session/x_screenshot.h"

#include <QString>
#include <algorithm>
#include <stdexcept>
#include <thread>
#include <utility>

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

void write(const QImage& image, const std::filesystem::path& path) {
    if (!image.save(QString::fromStdString(path.string()), "PNG"))
        throw std::runtime_error("cannot write " + path.string());
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
    write(image, path);
}

void XScreenshots::saveNext(const std::filesystem::path& path, const QRect& part,
                            const std::function<void()>& turn, std::chrono::milliseconds atMost) {
    const Deadline deadline(atMost);
    QImage image = lookAt(display_);
    for (bool isSteady = false; !isSteady || !isNext(image, part);) {
        if (deadline.hasPassed())
            throw std::runtime_error("nothing new appears on the screen for " + path.string());
        turn();
        QImage next = lookAt(display_);
        isSteady = next == image;
        image = std::move(next);
    }
    written_.push_back(image);
    write(image, path);
}

bool XScreenshots::isNext(const QImage& image, const QRect& part) const {
    const QImage shown = image.copy(part);
    QImage empty(shown.size(), shown.format());
    empty.fill(shown.pixel(0, 0));
    return shown != empty && std::find(written_.begin(), written_.end(), image) == written_.end();
}

} // namespace hopsel::session
