#include "platform/linux/texts/linux_words.h"

#include "core/base/product.h"

#include <algorithm>
#include <array>

namespace hopsel {

namespace {

using l10n::Key;

struct Row {
    Key key;
    const char* korean;
    const char* english;
};

constexpr std::array rows{
#define TEXT(key, korean, english) Row{Key::key, korean, english},
#include "platform/linux/texts/linux_texts.def"
#undef TEXT
};

constexpr std::array gnomeRows{
#define TEXT(key, korean, english) Row{Key::key, korean, english},
#include "platform/linux/texts/gnome_texts.def"
#undef TEXT
};

constexpr std::array helperRows{
#define TEXT(key, korean, english) Row{Key::key, korean, english},
#include "platform/linux/texts/helper_texts.def"
#undef TEXT
};

struct Label {
    std::uint16_t keyCode;
    const char* korean;
    const char* english;
};

// What PC keyboards print; several have no code on the keyboards that the codes come from.
constexpr std::array labels{
    Label{36, "Enter", "Enter"},
    Label{51, "Backspace", "Backspace"},
    Label{117, "Delete", "Delete"},
    Label{114, "Insert", "Insert"},
    Label{105, "Print", "Print"},
    Label{107, "Scroll Lock", "Scroll Lock"},
    Label{113, "Pause", "Pause"},
    Label{110, "Menu", "Menu"},
    Label{10, "<", "<"},
    Label{93, "¥", "¥"},
    Label{94, "\\ (ろ)", "\\ (ろ)"},
    Label{102, "無変換 (Muhenkan)", "無変換 (Muhenkan)"},
    Label{104, "変換 (Henkan)", "変換 (Henkan)"},
    Label{349, "かな (Kana)", "かな (Kana)"},
    Label{71, "Num Lock", "Num Lock"},
    Label{76, "Enter (키패드)", "Enter (keypad)"},
    Label{75, "/ (키패드)", "/ (keypad)"},
    Label{67, "* (키패드)", "* (keypad)"},
    Label{78, "- (키패드)", "- (keypad)"},
    Label{69, "+ (키패드)", "+ (keypad)"},
    Label{65, ". (키패드)", ". (keypad)"},
    Label{81, "= (키패드)", "= (keypad)"},
    Label{95, ", (키패드)", ", (keypad)"},
    Label{82, "0 (키패드)", "0 (keypad)"},
    Label{83, "1 (키패드)", "1 (keypad)"},
    Label{84, "2 (키패드)", "2 (keypad)"},
    Label{85, "3 (키패드)", "3 (keypad)"},
    Label{86, "4 (키패드)", "4 (keypad)"},
    Label{87, "5 (키패드)", "5 (keypad)"},
    Label{88, "6 (키패드)", "6 (keypad)"},
    Label{89, "7 (키패드)", "7 (keypad)"},
    Label{91, "8 (키패드)", "8 (keypad)"},
    Label{92, "9 (키패드)", "9 (keypad)"},
    Label{74, "음소거", "Mute"},
    Label{73, "볼륨 작게", "Volume Down"},
    Label{72, "볼륨 크게", "Volume Up"},
    Label{420, "재생", "Play"},
    Label{396, "계산기", "Calculator"},
    Label{63, "Fn", "Fn"},
    Label{399, "Fn", "Fn"},
};

template <std::size_t size>
const char* textIn(const std::array<Row, size>& table, Key key, L10nLanguage language) {
    const auto* found =
        std::find_if(table.begin(), table.end(), [&](const Row& row) { return row.key == key; });
    if (found == table.end()) return nullptr;
    return language == L10nLanguage::ko ? found->korean : found->english;
}

const char* ownText(KeysFrom keysFrom, Key key, L10nLanguage language) {
    switch (keysFrom) {
    case KeysFrom::gnomeExtension: return textIn(gnomeRows, key, language);
    case KeysFrom::keyHelper: return textIn(helperRows, key, language);
    case KeysFrom::xServer: break;
    }
    return nullptr;
}

std::string keyLabel(std::uint16_t keyCode, L10nLanguage language) {
    const auto* found = std::find_if(labels.begin(), labels.end(),
                                     [&](const Label& label) { return label.keyCode == keyCode; });
    if (found == labels.end()) return {};
    return language == L10nLanguage::ko ? found->korean : found->english;
}

const char* word(ModifierFamily family) {
    switch (family) {
    case ModifierFamily::command: return "Super";
    case ModifierFamily::option: return "Alt";
    case ModifierFamily::shift: return "Shift";
    case ModifierFamily::control: return "Ctrl";
    }
    return "";
}

std::string keyName(ModifierKey key, L10nLanguage language, const PrintedKeys& printed) {
    if (key == ModifierKey::rightOption && printed.rightAlt != PrintedKeys::RightAlt::alt)
        return printed.rightAlt == PrintedKeys::RightAlt::hangul ? "한/영" : "AltGr";
    if (key == ModifierKey::rightControl && printed.rightCtrl == PrintedKeys::RightCtrl::hanja) return "한자";
    const bool isLeft = rawValue(key).substr(0, 4) == "left";
    const bool isKorean = language == L10nLanguage::ko;
    const std::string side = isLeft ? (isKorean ? "왼쪽 " : "Left ") : (isKorean ? "오른쪽 " : "Right ");
    return side + word(family(key));
}

} // namespace

l10n::SystemWords linuxWords(std::function<PrintedKeys()> printed, KeysFrom keysFrom) {
    l10n::SystemWords words;
    words.text = [keysFrom](Key key, L10nLanguage language) {
        const char* own = ownText(keysFrom, key, language);
        return own != nullptr ? own : textIn(rows, key, language);
    };
    words.keyLabel = keyLabel;
    words.keyName = [printed = std::move(printed)](ModifierKey key, L10nLanguage language) {
        return keyName(key, language, printed ? printed() : PrintedKeys());
    };
    words.order = {ModifierFamily::command, ModifierFamily::control, ModifierFamily::option,
                   ModifierFamily::shift};
    words.pasteKeys = "Ctrl+V";
    words.translatesEvents = true;
    return words;
}

} // namespace hopsel
