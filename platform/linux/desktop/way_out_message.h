// Says what is left for the user to do where a button could not: what went wrong, and a command for a
// terminal.
//
// Owned by the settings opener, which shows one at a time.
#pragma once

#include "platform/linux/keys/way_out.h"

#include <QWidget>
#include <functional>
#include <memory>

namespace hopsel {

/// Shown at once, beside everything else; closing it hides it.
std::unique_ptr<QWidget> wayOutMessage(const WayOut& way, std::function<void()> onHelp);

} // namespace hopsel
