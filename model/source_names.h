// Names by which a person tells input sources apart. Pure.
#pragma once

#include "core/platform/input_source.h"

#include <vector>

namespace hopsel::source_names {

/// Two variants of a layout may bear one name. Each of those gets what its identifier says added to it:
/// "English (US)" becomes "English (US) [us+dvorak]".
std::vector<InputSourceInfo> toldApart(std::vector<InputSourceInfo> sources);

} // namespace hopsel::source_names
