#include "platform/linux/x11/x11_key_grabs.h"

#include "platform/linux/keys/key_codes.h"

#include <stdexcept>
#include <xcb/xinput.h>

namespace hopsel {

namespace {

/// The raw bits too: the server hides raw events from the very client whose grab is active on the root
/// window, unless the grab asks for them.
constexpr std::uint32_t grabEvents = XCB_INPUT_XI_EVENT_MASK_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_KEY_RELEASE |
                                     XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS |
                                     XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE;

std::vector<std::uint32_t> asModifiers(const std::set<XModifierMask>& masks) {
    return {masks.begin(), masks.end()};
}

std::string describe(XKeyCode key) {
    const auto position = static_cast<std::uint16_t>(key - key_codes::x11Offset);
    return "key code " + std::to_string(key_codes::virtualKeyCode(position));
}

} // namespace

void X11KeyGrabs::install(const ShortcutSet& shortcuts, const KeyMeanings& meanings,
                          const std::vector<MasterKeyboard>& masters) {
    WantedKeys wanted;
    for (const ShortcutKey& shortcut : shortcuts)
        for (const KeyGrab& key : meanings.grabs(shortcut))
            wanted[key.keyCode].insert(key.masks.begin(), key.masks.end());

    // Asked before anything is grabbed: a filter that is refused every two seconds must not touch the
    // keyboard.
    std::string contested = contestedKey(wanted);
    if (contested.empty() && (wanted != wanted_ || masters != masters_)) {
        removeAll();
        wanted_ = std::move(wanted);
        masters_ = masters;
        contested = grabAll();
    }
    if (contested.empty()) return;
    removeAll();
    throw std::runtime_error("another program has grabbed a shortcut's key combination (" + contested + ")");
}

std::string X11KeyGrabs::grabAll() {
    for (const auto& [key, masks] : wanted_) {
        coveredKeys_.set(key);
        for (const MasterKeyboard& master : masters_)
            if (!grab(key, masks, master.keyboard)) return describe(key);
    }
    return {};
}

void X11KeyGrabs::removeAll() {
    for (const auto& [key, masks] : wanted_)
        for (const MasterKeyboard& master : masters_) {
            const auto modifiers = asModifiers(masks);
            xcb_input_xi_passive_ungrab_device(connection_.get(), connection_.root(), key, master.keyboard,
                                               static_cast<std::uint16_t>(modifiers.size()),
                                               XCB_INPUT_GRAB_TYPE_KEYCODE, modifiers.data());
        }
    connection_.flush();
    wanted_.clear();
    masters_.clear();
    coveredKeys_.reset();
}

std::string X11KeyGrabs::contestedKey(const WantedKeys& wanted) {
    // XInput and core grabs of one combination live side by side without an error, so the question is put
    // with a core grab, which is refused if there is another one and taken back at once if not.
    struct Question {
        XKeyCode key;
        xcb_void_cookie_t cookie;
    };
    std::vector<Question> questions;
    auto* c = helper_.get();
    xcb_grab_server(c); // nobody shall be refused a key because of a question
    for (const auto& [key, masks] : wanted)
        for (const XModifierMask mask : masks)
            questions.push_back({key, xcb_grab_key_checked(c, 0, helper_.root(), mask, key,
                                                           XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)});
    for (const auto& [key, masks] : wanted)
        for (const XModifierMask mask : masks) xcb_ungrab_key(c, key, helper_.root(), mask);
    xcb_ungrab_server(c);

    std::string contested;
    for (const Question& question : questions)
        if (const XcbPtr<xcb_generic_error_t> error(xcb_request_check(c, question.cookie)); error)
            contested = describe(question.key);
    helper_.flush();
    return contested;
}

bool X11KeyGrabs::grab(XKeyCode key, const Masks& masks, XDeviceId keyboard) {
    const auto modifiers = asModifiers(masks);
    const auto cookie = xcb_input_xi_passive_grab_device(
        connection_.get(), XCB_CURRENT_TIME, connection_.root(), XCB_CURSOR_NONE, key, keyboard,
        static_cast<std::uint16_t>(modifiers.size()), 1, XCB_INPUT_GRAB_TYPE_KEYCODE,
        XCB_INPUT_GRAB_MODE_22_SYNC, XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_OWNER_NO_OWNER, &grabEvents,
        modifiers.data());
    const XcbPtr<xcb_input_xi_passive_grab_device_reply_t> reply(
        xcb_input_xi_passive_grab_device_reply(connection_.get(), cookie, nullptr));
    // The reply lists only the modifier states that were refused.
    return reply && reply->num_modifiers == 0;
}

} // namespace hopsel
