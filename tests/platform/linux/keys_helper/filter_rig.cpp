#include "platform/linux/keys_helper/filter_rig.h"

#include "platform/linux/keys_helper/key_words.h"

#include <linux/input-event-codes.h>
#include <sstream>
#include <utility>

namespace hopsel {

namespace {

void append(std::string& words, const std::string& word) { words += (words.empty() ? "" : " ") + word; }

} // namespace

FilterRig::FilterRig() : filter(*this, key_words::position) {
    for (const KeyboardId keyboard : {1U, 2U}) {
        filter.add(keyboard, {});
        filter.setMirrored(keyboard, true);
    }
}

void FilterRig::type(std::string_view words, KeyboardId keyboard) {
    std::istringstream stream{std::string(words)};
    for (std::string word; stream >> word;) {
        const std::uint16_t key = key_words::code(std::string_view(word).substr(0, word.size() - 1));
        const std::int32_t value = word.back() == '+' ? 1 : word.back() == '-' ? 0 : 2;
        filter.keyboardFrame(keyboard, {.microseconds = microseconds_ += 1000,
                                        .events = {{EV_MSC, MSC_SCAN, key}, {EV_KEY, key, value}},
                                        .isRecovered = false});
    }
}

void FilterRig::declare(std::initializer_list<std::string_view> combinations) {
    KeyDeclaration declaration;
    for (const std::string_view text : combinations)
        declaration.combinations.push_back(ShortcutKey::fromStorageString(text).value());
    filter.declare(declaration);
}

std::string FilterRig::desktop(KeyboardId keyboard) { return std::exchange(desktop_[keyboard], {}); }

std::string FilterRig::told() { return std::exchange(told_, {}); }

void FilterRig::forward(KeyboardId keyboard, const std::vector<DeviceEvent>& events) {
    for (const DeviceEvent& event : events)
        if (event.type == EV_KEY) append(desktop_[keyboard], key_words::of(event));
}

void FilterRig::tell(const to_session::Message& message) { append(told_, key_words::of(message)); }

} // namespace hopsel
