#include "platform/linux/keys_helper/session/helper_listen_source.h"

#include "core/platform/tap_failure.h"
#include "platform/linux/keys/key_codes.h"

#include <linux/input-event-codes.h>
#include <utility>

namespace hopsel {

namespace {

constexpr double microseconds = 1e6;

/// As `HeldKeys` numbers them.
std::uint8_t numberOf(std::size_t key) {
    return static_cast<std::uint8_t>(told_keys::linuxCode(key) + key_codes::x11Offset);
}

} // namespace

void HelperListenSource::start() {
    if (isStarted_) return;
    if (!link_->open()) throw TapFailure(TapFailure::Kind::creationFailed, link_->failure());
    isStarted_ = true;
}

void HelperListenSource::stopListening() {
    isStarted_ = false;
    held_ = HeldKeys();
    knowsHeld_ = false;
    link_->close(); // after a start that failed it may be open too
}

void HelperListenSource::heard(const to_session::Modifier& modifier) {
    const std::uint8_t key = numberOf(modifier.key);
    const auto event =
        modifier.isDown ? held_.press(key, meaning(modifier.key)) : held_.release(key, meaning(modifier.key));
    if (!event) return;
    tell(*event, time_.take(static_cast<double>(modifier.microseconds) / microseconds, clock_()));
    if (modifier.isDown && event->type == RawEventType::flagsChanged && onModifierDown) onModifierDown();
}

void HelperListenSource::heard(const to_session::Other& other) {
    const bool isKey = other.kind == to_session::Other::Kind::key;
    tell({isKey ? RawEventType::keyDown : RawEventType::mouseDown, 0, held_.flags(), 0, false}, clock_());
}

void HelperListenSource::heard(const to_session::Held& held) {
    HeldKeys::KeySet down;
    for (std::size_t key = 0; key < told_keys::count; ++key)
        down.set(numberOf(key), told_keys::contains(held.keys, key));
    held_.rebuild(down, [this](std::uint8_t number) {
        const auto key = told_keys::indexOf(static_cast<std::uint16_t>(number - key_codes::x11Offset));
        return key ? meaning(*key) : KeyMeaning{};
    });
    const bool isFirst = !std::exchange(knowsHeld_, true);
    if (!isFirst && isStarted_ && onDisabled) onDisabled(true); // taps that were under way are void
}

void HelperListenSource::lost() {
    if (!std::exchange(isStarted_, false)) return;
    held_ = HeldKeys();
    knowsHeld_ = false;
    if (onDisabled) onDisabled(false);
}

void HelperListenSource::tell(RawEvent event, double time) const {
    if (!isStarted_ || !onEvent) return;
    event.timestamp = time;
    onEvent(event);
}

KeyMeaning HelperListenSource::meaning(std::size_t key) const {
    const auto& modifier = meanings_.at(key);
    return {modifier, !modifier && told_keys::linuxCode(key) == KEY_CAPSLOCK};
}

} // namespace hopsel
