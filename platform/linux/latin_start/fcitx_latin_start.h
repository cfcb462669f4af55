// Which input methods of Fcitx5 give Latin letters when they are selected, until their own key is pressed.
//
// A table of those that can be set to; all of them are delivered otherwise, and those that are not in it have
// no Latin mode to begin with. Pure: what is set is handed in.
#pragma once

#include "core/platform/input_source.h"

#include <functional>
#include <string>
#include <string_view>

namespace hopsel {

/// `method` as Fcitx5 names it: "mozc". `settingsOf` reads the text of a method's own settings file, empty if
/// there is none.
SourceLimit fcitxLatinStart(std::string_view method,
                            const std::function<std::string(std::string_view method)>& settingsOf);

} // namespace hopsel
