#include "platform/linux/x11/x11_local_key_monitor.h"

#include "platform/linux/keys/key_codes.h"
#include "platform/linux/x11/x11_keymap.h"

#include <QCoreApplication>
#include <bit>
#include <exception>
#include <utility>
#include <xkbcommon/xkbcommon-x11.h>

namespace hopsel {

void X11LocalKeyMonitor::start(std::function<void(const LocalKeyDown&)> onKeyDown) {
    onKeyDown_ = std::move(onKeyDown);
    connect();
    synchronize();
    QCoreApplication::instance()->installNativeEventFilter(this); // once, however often it is asked
}

void X11LocalKeyMonitor::stop() {
    onKeyDown_ = nullptr;
    if ((seen_ & swallowed_).none() && !lastRelease_) leave();
}

void X11LocalKeyMonitor::leave() {
    QCoreApplication::instance()->removeNativeEventFilter(this);
    // Nothing of it holds for keys that are pressed while nobody looks.
    seen_.reset();
    swallowed_.reset();
    lastRelease_.reset();
    held_ = HeldKeys();
    connection_.reset();
}

void X11LocalKeyMonitor::connect() {
    try {
        if (!connection_ || connection_->isLost()) {
            connection_ = std::make_unique<X11Connection>();
            // Each connection has to ask for the keymaps' protocol once.
            xkb_x11_setup_xkb_extension(connection_->get(), XKB_X11_MIN_MAJOR_XKB_VERSION,
                                        XKB_X11_MIN_MINOR_XKB_VERSION, XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS,
                                        nullptr, nullptr, nullptr, nullptr);
        }
        meanings_ = x11_keymap::readMeanings(*connection_);
    } catch (const std::exception&) {
        connection_.reset();
        meanings_ = KeyMeanings();
    }
}

void X11LocalKeyMonitor::synchronize() {
    if (!connection_) return;
    const XcbPtr<xcb_query_keymap_reply_t> reply(
        xcb_query_keymap_reply(connection_->get(), xcb_query_keymap(connection_->get()), nullptr));
    if (!reply) return;
    HeldKeys::KeySet down;
    for (std::size_t key = 0; key < down.size(); ++key)
        down[key] = ((static_cast<unsigned>(reply->keys[key / 8]) >> (key % 8)) & 1U) != 0;
    held_.rebuild(down, [this](XKeyCode key) { return meaning(key); });
    seen_ &= down;
}

KeyMeaning X11LocalKeyMonitor::meaning(XKeyCode key) const {
    return {meanings_.modifier(key), meanings_.isCapsLock(key)};
}

bool X11LocalKeyMonitor::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/) {
    if (eventType != "xcb_generic_event_t") return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    switch (hopsel::eventType(*event)) {
    case XCB_KEY_PRESS: return pressed(*reinterpret_cast<const xcb_key_press_event_t*>(event));
    case XCB_KEY_RELEASE: return released(*reinterpret_cast<const xcb_key_release_event_t*>(event));
    case XCB_FOCUS_IN:
        synchronize(); // what was released in another window, or under its grab, was not told to us
        return false;
    default: return false;
    }
}

bool X11LocalKeyMonitor::pressed(const xcb_key_press_event_t& event) {
    const XKeyCode key = event.detail;
    // The server repeats a key as a release and a press of the same moment; to a client that asked for it, as
    // presses alone.
    const bool isRepeat = seen_[key] || lastRelease_ == Release{key, event.time};
    lastRelease_.reset();
    seen_.set(key);
    held_.press(key, meaning(key));
    if (!isRepeat) swallowed_[key] = isStarted();
    if (!isStarted()) {
        const bool isOurs = swallowed_[key];
        if ((seen_ & swallowed_).none()) leave();
        return isOurs;
    }
    if (meanings_.isCapsLock(key)) {
        chord_ = Chord::none;
        if (!isRepeat) tellUnusable(UnusableKey::capsLock);
        return true;
    }
    if (meanings_.modifier(key)) {
        if (std::popcount(held_.modifiers().bits()) < 2)
            chord_ = Chord::none;
        else if (chord_ == Chord::none)
            chord_ = Chord::several;
        return true;
    }
    if (key == meanings_.silentKey()) return true; // our own tap guard's
    chord_ = Chord::spoilt;
    if (key < key_codes::x11Offset) return true;
    const auto linuxCode = static_cast<std::uint16_t>(key - key_codes::x11Offset);
    const auto onKeyDown = onKeyDown_; // it may stop or start us
    onKeyDown({key_codes::virtualKeyCode(linuxCode), held_.flags(), isRepeat});
    return true;
}

void X11LocalKeyMonitor::tellUnusable(UnusableKey key) const {
    if (const auto tell = onUnusable) tell(key); // it may stop us
}

bool X11LocalKeyMonitor::released(const xcb_key_release_event_t& event) {
    const XKeyCode key = event.detail;
    lastRelease_ = Release{key, event.time};
    seen_.reset(key);
    held_.release(key, meaning(key));
    const bool isOurs = swallowed_[key];
    if (held_.modifiers().empty() && std::exchange(chord_, Chord::none) == Chord::several && isStarted())
        tellUnusable(UnusableKey::modifiersTogether);
    return isOurs;
}

} // namespace hopsel
