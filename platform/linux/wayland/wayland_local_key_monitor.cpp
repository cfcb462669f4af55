#include "platform/linux/wayland/wayland_local_key_monitor.h"

#include "platform/linux/keys/key_codes.h"
#include "platform/linux/keys/key_meanings.h"

#include <QCoreApplication>
#include <bit>
#include <utility>

namespace hopsel {

namespace {

/// Numbers beyond are no keys of a keyboard that the engine knows.
bool isKnown(quint32 code) { return code >= key_codes::x11Offset && code < HeldKeys::keyCount; }

KeyMeaning meaning(const QKeyEvent& event) {
    return KeyMeanings::of(static_cast<XKeyCode>(event.nativeScanCode()), event.nativeVirtualKey());
}

} // namespace

void WaylandLocalKeyMonitor::start(std::function<void(const LocalKeyDown&)> onKeyDown) {
    onKeyDown_ = std::move(onKeyDown);
    QCoreApplication::instance()->installEventFilter(this); // once, however often it is asked
}

void WaylandLocalKeyMonitor::stop() {
    onKeyDown_ = nullptr;
    if (swallowed_.none()) QCoreApplication::instance()->removeEventFilter(this);
}

// A key comes to the window first, and only then to the control that has the focus; what is asked before that
// is whether it is a shortcut of the window.
bool WaylandLocalKeyMonitor::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ApplicationStateChange || event->type() == QEvent::FocusAboutToChange) {
        held_ = HeldKeys();
        chord_ = Chord::none;
    }
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease ||
                       event->type() == QEvent::ShortcutOverride;
    if (!isKey || !watched->isWindowType()) return false;
    const auto& key = static_cast<const QKeyEvent&>(*event);
    if (!isKnown(key.nativeScanCode())) return isStarted();
    if (event->type() == QEvent::ShortcutOverride) {
        event->setAccepted(isStarted());
        return isStarted();
    }
    const std::size_t code = key.nativeScanCode();
    if (event->type() == QEvent::KeyPress) {
        if (!key.isAutoRepeat()) swallowed_[code] = isStarted();
        const bool isOurs = swallowed_[code];
        if (isStarted()) pressed(key);
        return isOurs;
    }
    const bool isOurs = swallowed_[code];
    if (key.isAutoRepeat()) return isOurs;
    swallowed_.reset(code);
    released(key);
    if (!isStarted() && swallowed_.none()) {
        held_ = HeldKeys();
        QCoreApplication::instance()->removeEventFilter(this);
    }
    return isOurs;
}

void WaylandLocalKeyMonitor::pressed(const QKeyEvent& event) {
    const KeyMeaning what = meaning(event);
    const auto code = static_cast<std::uint8_t>(event.nativeScanCode());
    if (!event.isAutoRepeat()) held_.press(code, what);
    if (what.isCapsLock) {
        chord_ = Chord::none;
        if (!event.isAutoRepeat()) tellUnusable(UnusableKey::capsLock);
        return;
    }
    if (what.modifier) {
        if (std::popcount(held_.modifiers().bits()) < 2)
            chord_ = Chord::none;
        else if (chord_ == Chord::none)
            chord_ = Chord::several;
        return;
    }
    chord_ = Chord::spoilt;
    const auto linuxCode = static_cast<std::uint16_t>(code - key_codes::x11Offset);
    const auto onKeyDown = onKeyDown_; // it may stop or start us
    onKeyDown({key_codes::virtualKeyCode(linuxCode), held_.flags(), event.isAutoRepeat()});
}

void WaylandLocalKeyMonitor::released(const QKeyEvent& event) {
    held_.release(static_cast<std::uint8_t>(event.nativeScanCode()), meaning(event));
    if (held_.modifiers().empty() && std::exchange(chord_, Chord::none) == Chord::several && isStarted())
        tellUnusable(UnusableKey::modifiersTogether);
}

void WaylandLocalKeyMonitor::tellUnusable(UnusableKey key) const {
    if (const auto tell = onUnusable) tell(key); // it may stop us
}

} // namespace hopsel
