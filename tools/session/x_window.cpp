#include "session/x_window.h"

#include "session/x_xkb.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <xkbcommon/xkbcommon-x11.h>

namespace hopsel::session {

namespace {

constexpr auto focusTimeout = std::chrono::seconds(10);
constexpr std::uint16_t xOffset = 8;

bool isKey(const XRecord& record) {
    return record.kind == XRecord::Kind::keyPress || record.kind == XRecord::Kind::keyRelease;
}

std::string typedText(const XTestWindow::Records& records) {
    std::string text;
    for (const XRecord& record : records) text += record.text;
    return text;
}

} // namespace

XTestWindow::XTestWindow(const std::string& name) {
    prepareKeyboard();
    create(name);
    const auto handleEvent = [this](const xcb_generic_event_t& event) { handle(event); };
    if (!display_.waitFor(handleEvent, [this] { return isMapped_; }, focusTimeout)) {
        throw std::runtime_error("the test window was not mapped");
    }
    focus();
    clear();
}

XTestWindow::~XTestWindow() = default;

void XTestWindow::create(const std::string& name) {
    window_ = xcb_generate_id(display_.get());
    const std::uint32_t mask = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE |
                               XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE |
                               XCB_EVENT_MASK_FOCUS_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    const std::array<std::uint32_t, 2> values{display_.screen().white_pixel, mask};
    xcb_create_window(display_.get(), XCB_COPY_FROM_PARENT, window_, display_.root(), 100, 100, 400, 300, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values.data());
    const auto setText = [&](xcb_atom_t property, const std::string& text) {
        xcb_change_property(display_.get(), XCB_PROP_MODE_REPLACE, window_, property, XCB_ATOM_STRING, 8,
                            static_cast<std::uint32_t>(text.size()), text.data());
    };
    setText(XCB_ATOM_WM_NAME, name);
    setText(XCB_ATOM_WM_CLASS, name + '\0' + name + '\0');
    xcb_map_window(display_.get(), window_);
}

void XTestWindow::prepareKeyboard() {
    firstXkbEvent_ = useXkb(display_);
    context_.reset(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
    // A repeat is then a press without a release before it.
    xcb_discard_reply(display_.get(),
                      xcb_xkb_per_client_flags(display_.get(), XCB_XKB_ID_USE_CORE_KBD,
                                               XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT,
                                               XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT, 0, 0, 0)
                          .sequence);
    constexpr std::uint16_t types = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr std::uint16_t parts =
        XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
    xcb_xkb_select_events_details_t details{};
    details.affectNewKeyboard = details.newKeyboardDetails = XCB_XKB_NKN_DETAIL_KEYCODES;
    xcb_xkb_select_events_aux(display_.get(), XCB_XKB_ID_USE_CORE_KBD, types, 0, 0, parts, parts, &details);
    loadKeymap();
}

void XTestWindow::loadKeymap() {
    const std::int32_t device = xkb_x11_get_core_keyboard_device_id(display_.get());
    keymap_.reset(
        xkb_x11_keymap_new_from_device(context_.get(), display_.get(), device, XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (!keymap_) throw std::runtime_error("cannot read the X server's keymap");
    state_.reset(xkb_state_new(keymap_.get()));
}

void XTestWindow::focus() {
    const auto manager = display_.numberProperty(display_.root(), "_NET_SUPPORTING_WM_CHECK");
    if (manager != 0) {
        xcb_client_message_event_t request{};
        request.response_type = XCB_CLIENT_MESSAGE;
        request.format = 32;
        request.window = window_;
        request.type = display_.atom("_NET_ACTIVE_WINDOW");
        request.data.data32[0] = 2; // as a pager does, whom window managers obey
        xcb_send_event(display_.get(), 0, display_.root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char*>(&request));
    } else {
        xcb_set_input_focus(display_.get(), XCB_INPUT_FOCUS_POINTER_ROOT, window_, XCB_CURRENT_TIME);
    }
    const auto handleEvent = [this](const xcb_generic_event_t& event) { handle(event); };
    if (!display_.waitFor(handleEvent, [this] { return hasFocus_; }, focusTimeout)) {
        throw std::runtime_error("the test window did not get the focus");
    }
}

void XTestWindow::handle(const xcb_generic_event_t& event) {
    const double now = monotonicSeconds();
    switch (const std::uint8_t type = typeOf(event)) {
    case XCB_MAP_NOTIFY: isMapped_ = true; break;
    case XCB_KEY_PRESS:
    case XCB_KEY_RELEASE:
        handleKey(reinterpret_cast<const xcb_key_press_event_t&>(event), type == XCB_KEY_PRESS);
        records_.back().receivedAt = now;
        break;
    case XCB_BUTTON_PRESS:
    case XCB_BUTTON_RELEASE: {
        const auto& button = reinterpret_cast<const xcb_button_press_event_t&>(event);
        XRecord record;
        record.kind = type == XCB_BUTTON_PRESS ? XRecord::Kind::buttonPress : XRecord::Kind::buttonRelease;
        record.code = button.detail;
        record.state = button.state;
        record.receivedAt = now;
        records_.push_back(record);
        break;
    }
    case XCB_FOCUS_IN:
    case XCB_FOCUS_OUT: {
        const auto& focus = reinterpret_cast<const xcb_focus_in_event_t&>(event);
        if (focus.detail == XCB_NOTIFY_DETAIL_POINTER) break; // follows the pointer, not the focus
        XRecord record;
        record.kind = type == XCB_FOCUS_IN ? XRecord::Kind::focusIn : XRecord::Kind::focusOut;
        record.mode = focus.mode;
        record.receivedAt = now;
        records_.push_back(record);
        hasFocus_ = type == XCB_FOCUS_IN;
        break;
    }
    default:
        if (type == firstXkbEvent_) loadKeymap();
    }
}

void XTestWindow::handleKey(const xcb_key_press_event_t& event, bool isPress) {
    XRecord record;
    record.kind = isPress ? XRecord::Kind::keyPress : XRecord::Kind::keyRelease;
    record.code = static_cast<std::uint16_t>(event.detail - xOffset);
    record.state = event.state;
    // A core event carries the eight real modifiers in its low byte and the group in bits 13 and 14.
    xkb_state_update_mask(state_.get(), event.state & 0xFFU, 0, 0, 0, 0, (event.state >> 13) & 3U);
    record.keysym = xkb_state_key_get_one_sym(state_.get(), event.detail);
    const auto held = std::find(down_.begin(), down_.end(), record.code);
    record.isRepeat = isPress && held != down_.end();
    if (isPress) {
        std::array<char, 16> text{};
        xkb_state_key_get_utf8(state_.get(), event.detail, text.data(), text.size());
        record.text = text.data();
        if (!record.isRepeat) down_.push_back(record.code);
    } else if (held != down_.end()) {
        down_.erase(held);
    }
    records_.push_back(std::move(record));
}

const XTestWindow::Records& XTestWindow::records() {
    display_.roundTrip();
    waitFor([](const Records&) { return false; }, std::chrono::milliseconds(0));
    return records_;
}

bool XTestWindow::waitFor(const std::function<bool(const Records&)>& condition,
                          std::chrono::milliseconds timeout) {
    return display_.waitFor([this](const xcb_generic_event_t& event) { handle(event); },
                            [&] { return condition(records_); }, timeout);
}

bool XTestWindow::waitForKeys(std::size_t count, std::chrono::milliseconds timeout) {
    const auto isCounted = [](const XRecord& record) { return isKey(record) && !record.isRepeat; };
    return waitFor(
        [&](const Records& records) {
            return static_cast<std::size_t>(std::count_if(records.begin(), records.end(), isCounted)) >=
                   count;
        },
        timeout);
}

bool XTestWindow::waitForText(std::string_view text, std::chrono::milliseconds timeout) {
    return waitFor([&](const Records& records) { return typedText(records) == text; }, timeout);
}

std::string XTestWindow::keys() {
    std::string result;
    for (const XRecord& record : records()) {
        if (!isKey(record)) continue;
        if (!result.empty()) result += ' ';
        result += record.kind == XRecord::Kind::keyRelease ? '-' : record.isRepeat ? '*' : '+';
        result += std::to_string(record.code);
    }
    return result;
}

std::string XTestWindow::typed() { return typedText(records()); }

void XTestWindow::clear() {
    records();
    records_.clear();
}

} // namespace hopsel::session
