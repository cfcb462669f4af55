// The status item's menu in the toolkit's terms.
//
// Headers and lines of information are disabled entries: panels that show the menu for us know nothing else.
// The status line has a dot in its colour.
#pragma once

#include "ui/menubar/menu_model.h"

#include <QMenu>
#include <functional>

namespace hopsel::status_menu {

/// Replaces the menu's entries. `onClick` is called with what was chosen.
void rebuild(QMenu& menu, const MenuState& state, const std::function<void(MenuAction)>& onClick);

} // namespace hopsel::status_menu
