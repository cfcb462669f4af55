#include "platform/linux/switch_keys/fcitx_switch_keys.h"

#include "platform/linux/switch_keys/key_accelerator.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <string>

namespace hopsel {

namespace {

constexpr off_t largestFile = 1 << 20;

// All that change the input method, with the stock keys. Where none are given here they are modifiers alone,
// or keys that stand in the place of one (Hangul), or that American keyboards lack (Zenkaku_Hankaku).
constexpr struct {
    std::string_view name;
    std::string_view stock;
} lists[] = {
    {"TriggerKeys", "Control+space"},
    {"AltTriggerKeys", {}},
    {"EnumerateForwardKeys", {}},
    {"EnumerateBackwardKeys", {}},
    {"EnumerateGroupForwardKeys", "Super+space"},
    {"EnumerateGroupBackwardKeys", "Shift+Super+space"},
    {"ActivateKeys", {}},
    {"DeactivateKeys", {}},
};

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string_view takeLine(std::string_view& rest) {
    const std::string_view line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(std::min(rest.size(), line.size() + 1));
    return trimmed(line);
}

bool isNumber(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

} // namespace

std::vector<ShortcutKey> fcitxSwitchKeys(std::string_view config) {
    constexpr std::string_view group = "Hotkey";
    std::array<bool, std::size(lists)> isGiven{};
    const auto markGiven = [&isGiven](std::string_view name) {
        for (std::size_t i = 0; i < isGiven.size(); ++i)
            if (lists[i].name == name) {
                isGiven[i] = true;
                return true;
            }
        return false;
    };

    std::vector<ShortcutKey> keys;
    const auto add = [&keys](std::string_view accelerator) {
        if (const auto key = shortcutFromAccelerator(accelerator)) keys.push_back(*key);
    };
    bool isInGroup = false;
    bool isInList = false;
    while (!config.empty()) {
        const std::string_view line = takeLine(config);
        if (line.empty() || line.front() == '#') continue;
        if (line.front() == '[') {
            const std::string_view section = line.substr(1, line.find(']') - 1);
            isInGroup = section == group;
            isInList = section.size() > group.size() && section.substr(0, group.size()) == group &&
                       section[group.size()] == '/' && markGiven(section.substr(group.size() + 1));
            continue;
        }
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos) continue;
        const std::string_view name = trimmed(line.substr(0, equals));
        // An empty list has no section of its own: "TriggerKeys=" in the group above says that there is none.
        if (isInGroup) markGiven(name);
        if (isInList && isNumber(name)) add(trimmed(line.substr(equals + 1)));
    }
    for (std::size_t i = 0; i < isGiven.size(); ++i)
        if (!isGiven[i]) add(lists[i].stock);
    return keys;
}

const std::vector<ShortcutKey>& FcitxSwitchKeys::read() {
    auto found = FileVersion::of(file_);
    if (found && found->size > largestFile) found.reset();
    if (isRead_ && found == readVersion_) return keys_;
    std::string text;
    if (found) {
        std::ifstream stream(file_, std::ios::binary);
        text.resize(static_cast<std::size_t>(found->size));
        stream.read(text.data(), static_cast<std::streamsize>(text.size()));
        text.resize(static_cast<std::size_t>(stream.gcount()));
    }
    keys_ = fcitxSwitchKeys(text);
    isRead_ = true;
    readVersion_ = found;
    return keys_;
}

} // namespace hopsel
