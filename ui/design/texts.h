// The texts as the toolkit wants them.
#pragma once

#include "model/texts/l10n.h"

#include <QString>
#include <string>
#include <vector>

namespace hopsel {

inline QString text(l10n::Key key, const std::vector<std::string>& arguments = {}) {
    return QString::fromStdString(l10n::t(key, arguments));
}

} // namespace hopsel
