// The command-line mode that draws every window into picture files and prints the menu, for review.
//
// It makes its own application object, needs no display and no bus, and touches nothing of the user's.
#pragma once

#include "model/menu/menu_model.h"

#include <ostream>
#include <string>

namespace hopsel::render_ui {

/// Before the application object is made: no display, the same fonts everywhere, no desktop's theme.
void prepareEnvironment();

/// 32 files and three menus. Needs a QApplication. Returns the exit status: 1 if anything failed.
int run(const std::string& outputDir);

void printMenu(const MenuState& state, std::ostream& output);

} // namespace hopsel::render_ui
