// One line for each recorded event, for the list that people read: in their language where the system's words
// ask for it, else in the report's.
#pragma once

#include "core/diagnostics/diagnostics_recorder.h"

#include <functional>
#include <string>

namespace hopsel::l10n {

/// `sourceName`: what people call the input source with this identifier.
using SourceNames = std::function<std::string(const std::string& id)>;

std::string eventText(const DiagnosticKind& kind, const SourceNames& sourceName);

} // namespace hopsel::l10n
