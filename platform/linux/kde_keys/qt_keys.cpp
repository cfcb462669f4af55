#include "platform/linux/kde_keys/qt_keys.h"

#include <Qt>
#include <algorithm>
#include <array>

namespace hopsel::qt_keys {

namespace {

struct Row {
    std::uint16_t keyCode;
    Qt::Key key;
};

// clang-format off
constexpr std::array table{
    Row{49, Qt::Key_Space}, Row{53, Qt::Key_Escape}, Row{36, Qt::Key_Return}, Row{51, Qt::Key_Backspace},
    Row{114, Qt::Key_Insert}, Row{117, Qt::Key_Delete}, Row{115, Qt::Key_Home}, Row{119, Qt::Key_End},
    Row{116, Qt::Key_PageUp}, Row{121, Qt::Key_PageDown},
    Row{123, Qt::Key_Left}, Row{124, Qt::Key_Right}, Row{125, Qt::Key_Down}, Row{126, Qt::Key_Up},
    Row{105, Qt::Key_Print}, Row{107, Qt::Key_ScrollLock}, Row{113, Qt::Key_Pause}, Row{110, Qt::Key_Menu},
    Row{122, Qt::Key_F1}, Row{120, Qt::Key_F2}, Row{99, Qt::Key_F3}, Row{118, Qt::Key_F4},
    Row{96, Qt::Key_F5}, Row{97, Qt::Key_F6}, Row{98, Qt::Key_F7}, Row{100, Qt::Key_F8},
    Row{101, Qt::Key_F9}, Row{109, Qt::Key_F10}, Row{103, Qt::Key_F11}, Row{111, Qt::Key_F12},
};
// clang-format on

constexpr int modifierBit(ModifierFamily family) {
    switch (family) {
    case ModifierFamily::command: return Qt::MetaModifier;
    case ModifierFamily::option: return Qt::AltModifier;
    case ModifierFamily::shift: return Qt::ShiftModifier;
    case ModifierFamily::control: return Qt::ControlModifier;
    }
    return 0;
}

} // namespace

std::optional<int> numberOf(const ShortcutKey& combination) {
    const auto* row = std::find_if(table.begin(), table.end(),
                                   [&](const Row& r) { return r.keyCode == combination.keyCode; });
    if (row == table.end() || combination.modifiers.contains(ModifierKey::rightOption)) return std::nullopt;
    int number = row->key;
    for (const ModifierKey modifier : allModifierKeys) {
        if (!combination.modifiers.contains(modifier)) continue;
        const int bit = modifierBit(family(modifier));
        if ((number & bit) != 0) return std::nullopt;
        number |= bit;
    }
    return number;
}

} // namespace hopsel::qt_keys
