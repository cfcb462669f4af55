// Frames in, frames and messages out: the row in which everything waits, and the one place that decides.
#include "platform/linux/keys_helper/filter/key_filter.h"

#include <algorithm>
#include <linux/input-event-codes.h>
#include <utility>

namespace hopsel {

namespace {

enum Motion : std::int32_t { release = 0, press = 1 }; // and 2, a repeat

} // namespace

void KeyFilter::keyboardFrame(KeyboardId keyboard, InputFrame frame) {
    take({.keyboard = keyboard, .frame = std::move(frame), .next = 0, .passing = {}});
}

void KeyFilter::pointerUsed() { take({}); }

void KeyFilter::take(Waiting item) {
    waiting_.push_back(std::move(item));
    if (!asked_) workOff();
    while (asked_ && waiting_.size() > maxWaiting) answerIsLate();
}

void KeyFilter::workOff() {
    while (!waiting_.empty() && workOff(waiting_.front())) waiting_.pop_front();
}

bool KeyFilter::workOff(Waiting& item) {
    if (!item.keyboard) {
        tellOther(to_session::Other::Kind::pointer);
        return true;
    }
    FilteredKeyboard& keyboard = keyboards_.at(*item.keyboard);
    for (; item.next < item.frame.events.size(); ++item.next) {
        const DeviceEvent& event = item.frame.events[item.next];
        const bool isKey = event.type == EV_KEY && event.code < keyNumbers;
        const std::optional<bool> passes = isKey ? key(keyboard, event, item.frame) : true;
        if (!passes) return false;
        if (*passes) item.passing.push_back(event);
    }
    pass(*item.keyboard, keyboard, item.passing);
    // A tap during which events were lost may have been none.
    if (item.frame.isRecovered) tellHeld();
    return true;
}

std::optional<bool> KeyFilter::key(FilteredKeyboard& keyboard, const DeviceEvent& event,
                                   const InputFrame& frame) {
    if (event.value == release) {
        keyboard.down.reset(event.code);
        if (const auto swallowed = keyboard.swallowed.extract(event.code)) {
            output_.tell(to_session::Released{swallowed.mapped()});
            return false;
        }
        tellRelease(event.code, frame);
        return true;
    }
    if (event.value != press) return !keyboard.swallowed.contains(event.code);

    if (verdict_) {
        if (*verdict_) keyboard.swallowed.emplace(event.code, askedFor_.keyCode);
        verdict_.reset();
    } else if (isCandidate(keyboard, event.code) && !frame.isRecovered) {
        asked_ = ++lastId_;
        askedFor_ = combinationOf(event.code);
        output_.tell(to_session::Ask{*asked_, askedFor_});
        return std::nullopt;
    }
    const bool isSwallowed = keyboard.swallowed.contains(event.code);
    if (!isSwallowed) tellPress(event.code, frame);
    keyboard.down.set(event.code);
    return !isSwallowed;
}

bool KeyFilter::isCandidate(const FilteredKeyboard& keyboard, std::uint16_t linuxCode) const {
    return keyboard.isMirrored && isWanted() && combinations_.contains(combinationOf(linuxCode));
}

void KeyFilter::tellPress(std::uint16_t linuxCode, const InputFrame& frame) {
    if (frame.isRecovered) return;
    const auto index = told_keys::indexOf(linuxCode);
    if (!index) return tellOther(to_session::Other::Kind::key);
    if (told_keys::contains(toldKeysDown(), *index)) return;
    otherTold_ = false;
    output_.tell(to_session::Modifier{static_cast<std::uint8_t>(*index), true, frame.microseconds});
}

void KeyFilter::tellRelease(std::uint16_t linuxCode, const InputFrame& frame) {
    const auto index = told_keys::indexOf(linuxCode);
    if (!index || frame.isRecovered || told_keys::contains(toldKeysDown(), *index)) return;
    output_.tell(to_session::Modifier{static_cast<std::uint8_t>(*index), false, frame.microseconds});
}

void KeyFilter::tellOther(to_session::Other::Kind kind) {
    if (otherTold_ || toldKeysDown() == 0) return;
    otherTold_ = true;
    output_.tell(to_session::Other{kind});
}

void KeyFilter::pass(KeyboardId id, FilteredKeyboard& keyboard, const std::vector<DeviceEvent>& events) {
    if (!keyboard.isMirrored) return;
    // What is left of a swallowed key is its scan code.
    if (std::all_of(events.begin(), events.end(), [](const DeviceEvent& e) { return e.type == EV_MSC; }))
        return;
    for (const DeviceEvent& event : events) {
        if (event.type != EV_KEY || event.code >= keyNumbers) continue;
        if (event.value <= press) keyboard.mirrorDown.set(event.code, event.value == press);
    }
    output_.forward(id, events);
}

} // namespace hopsel
