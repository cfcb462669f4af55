#include "model/texts/combination_texts.h"

#include "core/keys/shortcut_policy.h"
#include "model/texts/l10n.h"

#include <algorithm>

namespace hopsel::l10n {

namespace {

std::string in(const char* korean, const char* english) {
    return language() == L10nLanguage::ko ? korean : english;
}

template <class Codes>
bool contains(const Codes& codes, std::uint16_t code) {
    return std::find(codes.begin(), codes.end(), code) != codes.end();
}

} // namespace

std::string takenText(const std::vector<std::string>& names) {
    std::string all;
    for (const std::string& name : names) all += (all.empty() ? "" : ", ") + name;
    if (names.size() == 1)
        return "⚠ " + all + in(": 다른 프로그램이 쓰고 있음", " is taken by another program");
    return "⚠ " + all + in(": 다른 프로그램들이 쓰고 있음", " are taken by other programs");
}

std::string chooseAnotherText() { return in("다른 키 선택…", "Choose another key…"); }

std::string changeKeyText() { return in("전환 키 바꾸기", "Change Trigger Key"); }

std::string changeText() { return in("바꾸기", "Change"); }

std::string refusedText(UnusableKey key) {
    switch (key) {
    case UnusableKey::capsLock:
        return in("Caps Lock은 전환 키로 쓸 수 없습니다. 다른 키를 누르세요.",
                  "Caps Lock cannot be a trigger key. Press another key.");
    case UnusableKey::modifiersTogether:
        return in("이런 키는 하나만 단독으로 누르거나, Space 같은 다른 키와 함께 누르세요.",
                  "Press one of these keys alone, or with another key such as Space.");
    }
    return {};
}

std::string missedByPrograms(const ShortcutKey& key) {
    bool isControlAlone = !key.modifiers.empty();
    for (const ModifierKey held : key.modifiers)
        isControlAlone = isControlAlone && family(held) == ModifierFamily::control;
    if (!isControlAlone || contains(shortcut_policy::functionKeyCodes, key.keyCode) ||
        contains(shortcut_policy::nonTextKeyCodes, key.keyCode))
        return {};
    return in(
        "많은 프로그램이 이 조합을 씁니다. 규칙이 켜져 있는 동안 그 프로그램들은 이 조합을 받지 못합니다.",
        "Many programs use this combination themselves. They will not get it while the rule is on.");
}

} // namespace hopsel::l10n
