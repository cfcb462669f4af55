// Turns the state of the program into the menu, top to bottom. Pure, but for the language of the texts.
#pragma once

#include "model/menu/menu_model.h"

namespace hopsel::menu_builder {

std::vector<MenuItemSpec> items(const MenuState& state);

/// `taken`: the combinations that another program holds, where that is known.
std::string statusTitle(StatusLine status, const std::vector<std::string>& taken = {});
MenuStatusLevel statusLevel(StatusLine status);

} // namespace hopsel::menu_builder
