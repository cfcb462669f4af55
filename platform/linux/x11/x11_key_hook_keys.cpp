// What becomes of each key: listened to, asked about, swallowed or handed on.
#include "platform/linux/keys/key_codes.h"
#include "platform/linux/x11/x11_key_hook.h"
#include "platform/linux/x11/x11_key_hook_session.h"

#include <utility>

namespace hopsel {

namespace {

constexpr unsigned firstKeyCode = 8;
/// Up, down, left, right.
constexpr std::uint32_t firstWheelButton = 4;
constexpr std::uint32_t lastWheelButton = 7;

std::uint16_t virtualKeyCode(XKeyCode key) {
    return key_codes::virtualKeyCode(static_cast<std::uint16_t>(key - key_codes::x11Offset));
}

bool isKey(std::uint32_t detail) { return detail >= firstKeyCode && detail < HeldKeys::keyCount; }

} // namespace

void X11KeyHook::onRawKey(const xcb_input_raw_key_press_event_t& event, bool press) {
    if (!isKey(event.detail)) return;
    isWheelTold_ = false;
    const auto key = static_cast<XKeyCode>(event.detail);
    X11PendingKey raw{.key = key,
                      .press = press,
                      .keyboard = event.deviceid,
                      .time = event.time,
                      .flagsBefore = held_.flags()};
    raw.synthetic = ownPosts_.recognise(event.full_sequence, key, press);
    raw.event = press ? held_.press(key, meaning(key)) : held_.release(key, meaning(key));
    if (raw.event) {
        raw.event->timestamp = serverClock_.timeOf(event.time, clock_());
        raw.event->synthetic = raw.synthetic;
    }
    raw.mayBeGrabbed = isSwallowed(raw) || (press && session_->grabs.covers(key));

    if (!raw.mayBeGrabbed && pending_.empty()) return listen(raw.event);
    pending_.push(raw);
    if (raw.mayBeGrabbed) placeBarrier();
}

void X11KeyHook::onRawButton(std::uint32_t button, std::uint32_t time) {
    // A step of the wheel is a button press on X11. It counts, or Ctrl+scroll would end as a tap of Control,
    // but only then, and once: the next ones tell nothing new and would fill the record.
    const bool isWheel = button >= firstWheelButton && button <= lastWheelButton;
    if (isWheel && (heldModifiers(held_.flags()).empty() || std::exchange(isWheelTold_, true))) return;
    const RawEvent click{.type = isWheel ? RawEventType::wheelStep : RawEventType::mouseDown,
                         .flags = held_.flags(),
                         .timestamp = serverClock_.timeOf(time, clock_())};
    if (pending_.empty()) return listen(click);
    pending_.push({.flagsBefore = click.flags, .event = click});
}

void X11KeyHook::onGrabbedKey(X11Connection& connection, const xcb_input_key_press_event_t& event,
                              bool press) {
    if (!isKey(event.detail)) return;
    const auto key = static_cast<XKeyCode>(event.detail);
    const auto raw =
        pending_.take(key, press, event.time, [this](const X11PendingKey& earlier) { onUngrabbed(earlier); });
    if (session_->hold.isActive() && session_->hold.isOn(event.deviceid) &&
        !session_->hold.isWith(connection))
        session_->hold.abandon();
    if (press)
        onGrabbedPress(connection, event, raw);
    else
        onGrabbedRelease(connection, event, raw);
    // What waited behind this one only for the sake of order can go now.
    pending_.settle(0, [this](const X11PendingKey& later) { onUngrabbed(later); });
}

void X11KeyHook::onGrabbedPress(X11Connection& connection, const xcb_input_key_press_event_t& event,
                                const std::optional<X11PendingKey>& raw) {
    X11KeyHold& hold = session_->hold;
    const auto key = static_cast<XKeyCode>(event.detail);
    const bool isRepeat = (event.flags & XCB_INPUT_KEY_EVENT_FLAGS_KEY_REPEAT) != 0;
    const bool isHeldKeyboard = hold.isActive() && hold.isOn(event.deviceid);
    if (isHeldKeyboard && hold.contains(key)) {
        ask(ShortcutInput::Kind::keyDown, key, raw, true);
        return hold.next();
    }
    // One keyboard can be held at a time; what a second one presses meanwhile passes.
    const bool mayHold = isHeldKeyboard || !hold.isActive();
    if (mayHold && ask(ShortcutInput::Kind::keyDown, key, raw, isRepeat)) {
        if (hold.isActive()) return hold.add(key);
        return hold.begin(session_->master(event.deviceid), key);
    }
    if (isHeldKeyboard) {
        hold.handOn();
    } else {
        xcb_input_xi_allow_events(connection.get(), XCB_CURRENT_TIME, event.deviceid,
                                  XCB_INPUT_EVENT_MODE_REPLAY_DEVICE, 0, 0);
        connection.flush();
    }
    if (raw) listen(raw->event);
}

void X11KeyHook::onGrabbedRelease(X11Connection& connection, const xcb_input_key_release_event_t& event,
                                  const std::optional<X11PendingKey>& raw) {
    X11KeyHold& hold = session_->hold;
    const auto key = static_cast<XKeyCode>(event.detail);
    const bool isHeldKeyboard = hold.isActive() && hold.isOn(event.deviceid);
    if (isHeldKeyboard && hold.contains(key)) {
        // The application never saw the key go down, so it never sees it come up, even if the engine has
        // forgotten the key meanwhile. Then the listener is told, which has not heard of it either way.
        const bool consumed = ask(ShortcutInput::Kind::keyUp, key, raw, false);
        hold.remove(key);
        if (!consumed && raw) listen(raw->event);
        return;
    }
    if (isHeldKeyboard) {
        hold.handOn();
    } else {
        // Left over from a grab that ended. The keyboard must not stand still for it, nor may the answer
        // reach a grab that came later, so it bears the time of the event.
        xcb_input_xi_allow_events(connection.get(), event.time, event.deviceid,
                                  XCB_INPUT_EVENT_MODE_ASYNC_DEVICE, 0, 0);
        xcb_input_xi_ungrab_device(connection.get(), event.time, event.deviceid);
        connection.flush();
    }
    if (raw) listen(raw->event);
}

void X11KeyHook::onUngrabbed(const X11PendingKey& raw) {
    if (raw.mayBeGrabbed && isSwallowed(raw) && !raw.press) {
        // Someone took the keyboard away while the key was held.
        ask(ShortcutInput::Kind::keyUp, raw.key, raw, false);
        session_->hold.forget(raw.key);
    } else if (raw.mayBeGrabbed && raw.press && !session_->hold.isActive() &&
               shortcuts_.count({virtualKeyCode(raw.key), heldModifiers(raw.flagsBefore)}) > 0) {
        // It should have come to us. A menu or a game may hold the keyboard for a while; if it is a grab of
        // the very combination, the refresh finds out.
        refreshLater();
    }
    listen(raw.event);
}

bool X11KeyHook::isSwallowed(const X11PendingKey& raw) const {
    return session_->hold.contains(raw.key) && session_->hold.isOn(raw.keyboard);
}

bool X11KeyHook::ask(ShortcutInput::Kind kind, XKeyCode key, const std::optional<X11PendingKey>& raw,
                     bool isRepeat) {
    // A copy, because the engine may stop the filter in reply.
    const auto filter = filter_;
    if (!filter) return false;
    const std::uint64_t flags = raw ? raw->flagsBefore : held_.flags();
    const bool synthetic = raw && raw->synthetic;
    return filter({.kind = kind,
                   .keyCode = virtualKeyCode(key),
                   .flags = flags,
                   .isRepeat = isRepeat,
                   .synthetic = synthetic});
}

void X11KeyHook::listen(const std::optional<RawEvent>& event) {
    if (!event) return;
    if (const auto listener = listener_) listener(*event);
}

} // namespace hopsel
