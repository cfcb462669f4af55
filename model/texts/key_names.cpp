// The names of keys and combinations.
#include "core/base/overloaded.h"
#include "model/texts/l10n.h"
#include "model/texts/system_words.h"

#include <algorithm>
#include <array>

namespace hopsel::l10n {

namespace {

struct Label {
    std::uint16_t keyCode;
    std::string_view text;
};

constexpr std::array labels{
    Label{49, "Space"},    Label{36, "Return"},     Label{48, "Tab"},
    Label{51, "Delete"},   Label{53, "Esc"},        Label{117, "Forward Delete"},
    Label{114, "Help"},    Label{115, "Home"},      Label{119, "End"},
    Label{116, "Page Up"}, Label{121, "Page Down"},

    Label{123, "←"},       Label{124, "→"},         Label{125, "↓"},
    Label{126, "↑"},

    Label{122, "F1"},      Label{120, "F2"},        Label{99, "F3"},
    Label{118, "F4"},      Label{96, "F5"},         Label{97, "F6"},
    Label{98, "F7"},       Label{100, "F8"},        Label{101, "F9"},
    Label{109, "F10"},     Label{103, "F11"},       Label{111, "F12"},
    Label{105, "F13"},     Label{107, "F14"},       Label{113, "F15"},
    Label{106, "F16"},     Label{64, "F17"},        Label{79, "F18"},
    Label{80, "F19"},      Label{90, "F20"},

    Label{0, "A"},         Label{11, "B"},          Label{8, "C"},
    Label{2, "D"},         Label{14, "E"},          Label{3, "F"},
    Label{5, "G"},         Label{4, "H"},           Label{34, "I"},
    Label{38, "J"},        Label{40, "K"},          Label{37, "L"},
    Label{46, "M"},        Label{45, "N"},          Label{31, "O"},
    Label{35, "P"},        Label{12, "Q"},          Label{15, "R"},
    Label{1, "S"},         Label{17, "T"},          Label{32, "U"},
    Label{9, "V"},         Label{13, "W"},          Label{7, "X"},
    Label{16, "Y"},        Label{6, "Z"},

    Label{29, "0"},        Label{18, "1"},          Label{19, "2"},
    Label{20, "3"},        Label{21, "4"},          Label{23, "5"},
    Label{22, "6"},        Label{26, "7"},          Label{28, "8"},
    Label{25, "9"},

    Label{27, "-"},        Label{24, "="},          Label{33, "["},
    Label{30, "]"},        Label{42, "\\"},         Label{41, ";"},
    Label{39, "'"},        Label{43, ","},          Label{47, "."},
    Label{44, "/"},        Label{50, "`"},
};

std::string_view symbol(ModifierFamily family) {
    switch (family) {
    case ModifierFamily::command: return "⌘";
    case ModifierFamily::option: return "⌥";
    case ModifierFamily::shift: return "⇧";
    case ModifierFamily::control: return "⌃";
    }
    return "";
}

bool isLeft(ModifierKey key) { return rawValue(key).substr(0, 4) == "left"; }

auto displayOrder(ModifierFamily family) {
    const auto& order = systemWords().order;
    return std::find(order.begin(), order.end(), family) - order.begin();
}

} // namespace

std::string keyName(ModifierKey key) {
    if (const auto& own = systemWords().keyName)
        if (std::string name = own(key, language()); !name.empty()) return name;
    const bool isKorean = language() == L10nLanguage::ko;
    const std::string side = isLeft(key) ? (isKorean ? "왼쪽" : "Left") : (isKorean ? "오른쪽" : "Right");
    return side + " " + std::string(symbol(family(key)));
}

std::string keyLabel(std::uint16_t keyCode) {
    if (const auto& own = systemWords().keyLabel)
        if (std::string label = own(keyCode, language()); !label.empty()) return label;
    const auto* found = std::find_if(labels.begin(), labels.end(),
                                     [&](const Label& label) { return label.keyCode == keyCode; });
    return found != labels.end() ? std::string(found->text) : "Key " + std::to_string(keyCode);
}

std::string shortcutName(const ShortcutKey& key) {
    std::vector<ModifierKey> modifiers = sortedByName(key.modifiers);
    std::stable_sort(modifiers.begin(), modifiers.end(), [](ModifierKey a, ModifierKey b) {
        return displayOrder(family(a)) < displayOrder(family(b));
    });
    std::string name;
    for (const ModifierKey modifier : modifiers) name += keyName(modifier) + " + ";
    return name + keyLabel(key.keyCode);
}

std::string triggerName(const Trigger& trigger) {
    return std::visit(Overloaded{
                          [](const trigger::ModifierTap& tap) { return keyName(tap.key); },
                          [](const trigger::Shortcut& shortcut) { return shortcutName(shortcut.key); },
                      },
                      trigger);
}

} // namespace hopsel::l10n
