// The text of a bug report, and of each recorded entry. Pure.
//
// In Korean whatever the user's language: whoever reads the report must find the same words every time. The
// recording holds no typed characters, so the report does not either.
#pragma once

#include "core/diagnostics/conflict_analyzer.h"
#include "core/diagnostics/diagnostics_recorder.h"
#include "core/rules/rule.h"

#include <string>
#include <string_view>
#include <vector>

namespace hopsel {

struct ReportRule {
    bool enabled = true;
    Trigger trigger;
    std::string sourceA; ///< the identifier, not the name
    std::string sourceB; ///< the identifier, not the name
    friend bool operator==(const ReportRule&, const ReportRule&) = default;
};

struct ReportInput {
    std::string generatedAt; ///< ISO 8601 with numeric offset
    std::string appVersion;
    std::string macOSVersion; ///< of the operating system, whichever it is
    std::string architecture;
    bool inputMonitoringGranted = false;
    bool accessibilityGranted = false;
    EngineState engineState;
    ShortcutStatus shortcutStatus = ShortcutStatus::notNeeded;
    std::vector<ReportRule> rules; ///< in the order of the settings file
    std::vector<std::string> detectedApps;
    std::vector<ConflictWarning> warnings;
    DiagnosticEntries entries;
};

namespace report_builder {

/// Lines end with a line feed, the last one too.
std::string build(const ReportInput& input);

// One line each, without a line feed.
std::string entryText(const DiagnosticKind& kind);
std::string triggerText(const Trigger& trigger);
std::string warningText(const ConflictWarning& warning);

/// "running", "degraded(tapDisabled)" and so on.
std::string stateText(const EngineState& state);
std::string_view statusText(ShortcutStatus status);

} // namespace report_builder
} // namespace hopsel
