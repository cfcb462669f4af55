#include "session/x_keyboard.h"

#include <algorithm>
#include <stdexcept>
#include <xcb/xtest.h>

namespace hopsel::session {

namespace {
constexpr std::uint16_t xOffset = 8;
}

XKeyboard::XKeyboard() {
    const auto cookie = xcb_test_get_version(display_.get(), 2, 2);
    const XOwned<xcb_test_get_version_reply_t> reply(
        xcb_test_get_version_reply(display_.get(), cookie, nullptr));
    if (!reply) throw std::runtime_error("the X server has no XTEST extension");
}

XKeyboard::~XKeyboard() {
    while (!held_.empty()) fakeKey(held_.back(), false);
    // Waits for the server, which may be gone.
    XOwned<xcb_get_input_focus_reply_t>(
        xcb_get_input_focus_reply(display_.get(), xcb_get_input_focus(display_.get()), nullptr));
}

void XKeyboard::fake(std::uint8_t type, std::uint8_t detail, std::uint32_t delay) {
    xcb_test_fake_input(display_.get(), type, detail, delay, XCB_WINDOW_NONE, 0, 0, 0);
}

void XKeyboard::fakeKey(std::uint16_t code, bool isDown) {
    fake(isDown ? XCB_KEY_PRESS : XCB_KEY_RELEASE, static_cast<std::uint8_t>(code + xOffset));
    std::erase(held_, code);
    if (isDown) held_.push_back(code);
}

double XKeyboard::press(std::uint16_t code) {
    const double at = monotonicSeconds();
    fakeKey(code, true);
    display_.roundTrip();
    return at;
}

double XKeyboard::release(std::uint16_t code) {
    const double at = monotonicSeconds();
    fakeKey(code, false);
    display_.roundTrip();
    return at;
}

double XKeyboard::tap(std::uint16_t code) {
    press(code);
    return release(code);
}

void XKeyboard::hold(std::uint16_t code, std::chrono::milliseconds time) {
    fakeKey(code, true);
    fake(XCB_KEY_RELEASE, static_cast<std::uint8_t>(code + xOffset),
         static_cast<std::uint32_t>(time.count()));
    std::erase(held_, code);
    display_.roundTrip();
}

double XKeyboard::button(std::uint8_t number) {
    const double at = monotonicSeconds();
    fake(XCB_BUTTON_PRESS, number);
    fake(XCB_BUTTON_RELEASE, number);
    display_.roundTrip();
    return at;
}

double XKeyboard::scroll(Scroll direction) {
    // The server reports a scroll step as a click of one of the buttons 4 to 7.
    return button(static_cast<std::uint8_t>(4 + static_cast<int>(direction)));
}

void XKeyboard::movePointer(std::int16_t x, std::int16_t y) {
    xcb_test_fake_input(display_.get(), XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, display_.root(), x, y, 0);
    display_.roundTrip();
}

double XKeyboard::post(const std::vector<KeyStroke>& strokes) {
    const double at = monotonicSeconds();
    for (const KeyStroke& stroke : strokes) fakeKey(stroke.code, stroke.isDown);
    display_.flush();
    return at;
}

} // namespace hopsel::session
