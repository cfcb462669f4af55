#include "platform/linux/keys_helper/filter_rig.h"

#include "core/base/overloaded.h"

#include <array>
#include <linux/input-event-codes.h>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace hopsel {

namespace {

struct NamedKey {
    std::string_view name;
    std::uint16_t linuxCode;
    std::uint16_t position;
};

constexpr std::array keys{
    NamedKey{"lctrl", KEY_LEFTCTRL, 59},
    NamedKey{"rctrl", KEY_RIGHTCTRL, 62},
    NamedKey{"lalt", KEY_LEFTALT, 58},
    NamedKey{"lshift", KEY_LEFTSHIFT, 56},
    NamedKey{"caps", KEY_CAPSLOCK, 57},
    NamedKey{"space", KEY_SPACE, 49},
    NamedKey{"a", KEY_A, 0},
    NamedKey{"b", KEY_B, 11},
    NamedKey{"f5", KEY_F5, 96},
};

std::string nameOf(std::uint16_t linuxCode) {
    for (const NamedKey& key : keys)
        if (key.linuxCode == linuxCode) return std::string(key.name);
    return std::to_string(linuxCode);
}

void append(std::string& words, const std::string& word) { words += (words.empty() ? "" : " ") + word; }

} // namespace

FilterRig::FilterRig() : filter(*this, position) {
    for (const KeyboardId keyboard : {1U, 2U}) {
        filter.add(keyboard, {});
        filter.setMirrored(keyboard, true);
    }
}

void FilterRig::type(std::string_view words, KeyboardId keyboard) {
    std::istringstream stream{std::string(words)};
    for (std::string word; stream >> word;) {
        const std::uint16_t key = code(std::string_view(word).substr(0, word.size() - 1));
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

std::uint16_t FilterRig::code(std::string_view name) {
    for (const NamedKey& key : keys)
        if (key.name == name) return key.linuxCode;
    throw std::invalid_argument(std::string(name));
}

std::uint16_t FilterRig::position(std::uint16_t linuxCode) {
    for (const NamedKey& key : keys)
        if (key.linuxCode == linuxCode) return key.position;
    return static_cast<std::uint16_t>(256 + linuxCode);
}

void FilterRig::forward(KeyboardId keyboard, const std::vector<DeviceEvent>& events) {
    for (const DeviceEvent& event : events)
        if (event.type == EV_KEY) append(desktop_[keyboard], nameOf(event.code) + "-+*"[event.value]);
}

void FilterRig::tell(const to_session::Message& message) {
    using namespace to_session;
    append(told_, std::visit(Overloaded{
                                 [](const Welcome&) { return std::string("welcome"); },
                                 [](const State&) { return std::string("state"); },
                                 [](const Held& held) { return "held:" + std::to_string(held.keys); },
                                 [](const Modifier& key) {
                                     return nameOf(told_keys::linuxCode(key.key)) + (key.isDown ? "+" : "-");
                                 },
                                 [](const Other& other) {
                                     return std::string(other.kind == Other::Kind::key ? "key" : "pointer");
                                 },
                                 [](const Ask& ask) { return "?" + ask.combination.storageString(); },
                                 [](const Released& key) { return std::to_string(key.keyCode) + "-"; },
                                 [](const Late&) { return std::string("late"); },
                                 [](const Trouble&) { return std::string("ended"); },
                             },
                             message));
}

} // namespace hopsel
