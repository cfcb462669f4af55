// The status item's menu as lines of text, for a panel that draws it by itself and tells what was clicked.
//
// Each line that can be clicked has a key, by which the click is told. A key names what is done, not a place:
// whatever the menu has become meanwhile, a click does what was clicked or nothing. Pure, but for the
// language of the texts.
#pragma once

#include "ui/menubar/status_menu.h"

#include <QString>
#include <string>
#include <vector>

namespace hopsel {

struct MenuLine {
    enum class Kind {
        toggle,
        action,
        window, ///< an action that opens one
        choice, ///< one of several, beneath the `menu` before it
        header,
        info,
        ok, ///< a status, as are the two below
        neutral,
        problem,
        separator,
        menu,
    };
    Kind kind = Kind::info;
    QString text;
    bool isOn = false; ///< of a toggle or a choice
    QString key = {};  ///< empty where nothing can be clicked
    friend bool operator==(const MenuLine&, const MenuLine&) = default;
};

namespace menu_description {

std::vector<MenuLine> lines(const StatusMenu& menu);

/// Does what the line with this key stands for. Nothing if the menu has no such line.
void click(StatusMenu& menu, const QString& key);

} // namespace menu_description

} // namespace hopsel
