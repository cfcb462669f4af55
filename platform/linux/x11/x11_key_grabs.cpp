#include "platform/linux/x11/x11_key_grabs.h"

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

using Masks = std::set<XModifierMask>;
using Combinations = std::map<XKeyCode, Masks>;

void add(Combinations& to, const Combinations& more) {
    for (const auto& [key, masks] : more) to[key].insert(masks.begin(), masks.end());
}

Combinations without(const Combinations& all, const Combinations& some) {
    Combinations rest;
    for (const auto& [key, masks] : all) {
        const auto other = some.find(key);
        for (const XModifierMask mask : masks)
            if (other == some.end() || other->second.count(mask) == 0) rest[key].insert(mask);
    }
    return rest;
}

Combinations combinationsOf(const ShortcutKey& shortcut, const KeyMeanings& meanings) {
    Combinations all;
    for (const KeyGrab& key : meanings.grabs(shortcut))
        all[key.keyCode].insert(key.masks.begin(), key.masks.end());
    return all;
}

} // namespace

ShortcutSet X11KeyGrabs::install(const ShortcutSet& shortcuts, const KeyMeanings& meanings,
                                 const std::vector<MasterKeyboard>& masters) {
    if (masters != masters_) removeAll();
    masters_ = masters;
    Combinations all;
    for (const ShortcutKey& shortcut : shortcuts) add(all, combinationsOf(shortcut, meanings));
    // Asked before anything is grabbed: what is refused every two seconds must not touch the keyboard.
    Combinations taken = contested(all);
    ShortcutSet unavailable;
    while (true) {
        Combinations wanted;
        unavailable.clear();
        for (const ShortcutKey& shortcut : shortcuts) {
            const Combinations own = combinationsOf(shortcut, meanings);
            if (without(own, taken) == own)
                add(wanted, own);
            else
                unavailable.insert(shortcut);
        }
        letGo(without(held_, wanted));
        const Combinations refused = hold(without(wanted, held_));
        if (refused.empty()) break; // else once more, without the shortcuts that need them
        add(taken, refused);
    }
    coveredKeys_.reset();
    for (const auto& [key, masks] : held_) coveredKeys_.set(key);
    return unavailable;
}

X11KeyGrabs::Combinations X11KeyGrabs::hold(const Combinations& wanted) {
    Combinations refused;
    for (const auto& [key, masks] : wanted)
        for (const MasterKeyboard& master : masters_)
            if (Masks those = grab(key, masks, master.keyboard); !those.empty()) refused[key].merge(those);
    add(held_, wanted); // what was refused goes again with the shortcuts that needed it
    return refused;
}

void X11KeyGrabs::letGo(const Combinations& unwanted) {
    for (const auto& [key, masks] : unwanted)
        for (const MasterKeyboard& master : masters_) {
            const auto modifiers = asModifiers(masks);
            xcb_input_xi_passive_ungrab_device(connection_.get(), connection_.root(), key, master.keyboard,
                                               static_cast<std::uint16_t>(modifiers.size()),
                                               XCB_INPUT_GRAB_TYPE_KEYCODE, modifiers.data());
        }
    connection_.flush();
    held_ = without(held_, unwanted);
}

void X11KeyGrabs::removeAll() {
    letGo(Combinations(held_));
    masters_.clear();
    coveredKeys_.reset();
}

X11KeyGrabs::Combinations X11KeyGrabs::contested(const Combinations& wanted) {
    // XInput and core grabs of one combination live side by side without an error, so the question is put
    // with a core grab, which is refused if there is another one and taken back at once if not.
    struct Question {
        XKeyCode key;
        XModifierMask mask;
        xcb_void_cookie_t cookie;
    };
    std::vector<Question> questions;
    auto* c = helper_.get();
    xcb_grab_server(c); // nobody shall be refused a key because of a question
    for (const auto& [key, masks] : wanted)
        for (const XModifierMask mask : masks)
            questions.push_back({key, mask,
                                 xcb_grab_key_checked(c, 0, helper_.root(), mask, key, XCB_GRAB_MODE_ASYNC,
                                                      XCB_GRAB_MODE_ASYNC)});
    for (const auto& [key, masks] : wanted)
        for (const XModifierMask mask : masks) xcb_ungrab_key(c, key, helper_.root(), mask);
    xcb_ungrab_server(c);

    Combinations taken;
    for (const Question& question : questions)
        if (const XcbPtr<xcb_generic_error_t> error(xcb_request_check(c, question.cookie)); error)
            taken[question.key].insert(question.mask);
    helper_.flush();
    return taken;
}

X11KeyGrabs::Masks X11KeyGrabs::grab(XKeyCode key, const Masks& masks, XDeviceId keyboard) {
    const auto modifiers = asModifiers(masks);
    const auto cookie = xcb_input_xi_passive_grab_device(
        connection_.get(), XCB_CURRENT_TIME, connection_.root(), XCB_CURSOR_NONE, key, keyboard,
        static_cast<std::uint16_t>(modifiers.size()), 1, XCB_INPUT_GRAB_TYPE_KEYCODE,
        XCB_INPUT_GRAB_MODE_22_SYNC, XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_OWNER_NO_OWNER, &grabEvents,
        modifiers.data());
    const XcbPtr<xcb_input_xi_passive_grab_device_reply_t> reply(
        xcb_input_xi_passive_grab_device_reply(connection_.get(), cookie, nullptr));
    if (!reply) return masks; // the connection is lost; whoever reads it notices
    // The reply lists only the modifier states that were refused.
    const auto* refused = xcb_input_xi_passive_grab_device_modifiers(reply.get());
    Masks those;
    for (int i = 0; i < xcb_input_xi_passive_grab_device_modifiers_length(reply.get()); ++i)
        those.insert(static_cast<XModifierMask>(refused[i].modifiers));
    return those;
}

} // namespace hopsel
