#include "platform/linux/keys_helper/key_words.h"

#include "core/base/overloaded.h"

#include <array>
#include <linux/input-event-codes.h>
#include <stdexcept>

namespace hopsel::key_words {

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

} // namespace

std::uint16_t code(std::string_view name) {
    for (const NamedKey& key : keys)
        if (key.name == name) return key.linuxCode;
    throw std::invalid_argument(std::string(name));
}

std::string nameOf(std::uint16_t linuxCode) {
    for (const NamedKey& key : keys)
        if (key.linuxCode == linuxCode) return std::string(key.name);
    return std::to_string(linuxCode);
}

std::uint16_t position(std::uint16_t linuxCode) {
    for (const NamedKey& key : keys)
        if (key.linuxCode == linuxCode) return key.position;
    return static_cast<std::uint16_t>(256 + linuxCode);
}

std::string of(const DeviceEvent& event) {
    return nameOf(event.code) + (event.value == 0 ? "-" : event.value == 1 ? "+" : "*");
}

std::string of(const to_session::Message& message) {
    using namespace to_session;
    return std::visit(
        Overloaded{
            [](const Welcome& welcome) { return "welcome:" + std::to_string(welcome.version); },
            [](const State& state) {
                constexpr std::array filters{"off", "waiting", "on"};
                return std::to_string(state.keyboards) + "/" + std::to_string(state.unreadable) + ":" +
                       filters.at(static_cast<std::size_t>(state.filter)) +
                       (state.refused != 0 ? ",refused:" + std::to_string(state.refused) : "");
            },
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
            [](const Trouble& trouble) {
                constexpr std::array kinds{"ended", "inactive", "busy", "held-elsewhere", "no-mirror"};
                return kinds.at(static_cast<std::size_t>(trouble.kind)) +
                       (trouble.keyboard.empty() ? "" : ":" + trouble.keyboard);
            },
        },
        message);
}

} // namespace hopsel::key_words
