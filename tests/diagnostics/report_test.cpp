// The report as whole texts, and the mail it goes with.
#include "core/diagnostics/bug_report_mail.h"
#include "core/diagnostics/report_builder.h"

#include <clocale>
#include <cmath>
#include <fstream>
#include <gtest/gtest.h>
#include <limits>

namespace hopsel {
namespace {

std::string golden(const std::string& name) {
    std::ifstream file(std::string(HOPSEL_GOLDEN_FOLDER "/") + name);
    return {std::istreambuf_iterator<char>(file), {}};
}

using Key = diagnostic_kind::Key;

DiagnosticEntries everyEntry() {
    DiagnosticEntries entries;
    // Steps that floating point has exactly, but for the one hundredth at the end.
    const auto add = [&](double time, DiagnosticKind kind) {
        entries.push_back({2000 + time, std::move(kind)});
    };
    const auto addEvent = [&](double time, EngineEvent event) {
        add(time, diagnostic_kind::Engine{std::move(event)});
    };
    add(-1000, Key{key_event_kind::ModifierDown{ModifierKey::leftCommand},
                   {ModifierKey::rightShift, ModifierKey::leftCommand},
                   KeyVerdict::passed});
    add(-99.5, Key{key_event_kind::ModifierUp{ModifierKey::rightControl}, {}, KeyVerdict::switchRequested});
    add(-3, Key{key_event_kind::KeyDown{}, {}, KeyVerdict::suppressed});
    add(-2.75, Key{key_event_kind::KeyUp{}, {ModifierKey::leftOption}, KeyVerdict::captured});
    add(-2.5, Key{key_event_kind::MouseDown{}, {}, KeyVerdict::shortcutFired});
    add(-2.25, Key{key_event_kind::KeyUp{}, {}, KeyVerdict::shortcutConsumed});
    addEvent(-2, engine_event::StateChanged{engine_state::Stopped{}});
    addEvent(-2, engine_event::StateChanged{engine_state::Running{}});
    addEvent(-2, engine_event::StateChanged{engine_state::Degraded{DegradedReason::tapDisabled}});
    addEvent(-2, engine_event::StateChanged{engine_state::Degraded{DegradedReason::permissionMissing}});
    addEvent(-1.5, engine_event::Switched{"r", std::nullopt, "com.b", true, 2.5});
    addEvent(-1.5, engine_event::Switched{"r", "com.a", "com.b", false, -0.25});
    addEvent(-1.5, engine_event::SwitchFailed{"r", "com.b", select_result::Selected{}});
    addEvent(-1.5, engine_event::SwitchFailed{"r", "com.b", select_result::NotFound{}});
    addEvent(-1.5, engine_event::SwitchFailed{"r", "com.b", select_result::Failed{-50}});
    addEvent(-1, engine_event::SwitchSuppressed{"r", SuppressReason::secureInput});
    addEvent(-1, engine_event::RuleSkipped{"r", skip_reason::RemoteApp{}});
    addEvent(-1, engine_event::RuleSkipped{"r", skip_reason::GuestKeyUnavailable{}});
    addEvent(-1, engine_event::RuleSkipped{"r", skip_reason::BrokenSource{{"com.a", "com.b"}}});
    addEvent(-1, engine_event::GuestKeySent{"r", {49, {ModifierKey::leftControl}}});
    for (const ResetReason reason :
         {ResetReason::tapDisabled, ResetReason::sleep, ResetReason::wake, ResetReason::screenLocked,
          ResetReason::screenUnlocked, ResetReason::sessionInactive, ResetReason::sessionActive,
          ResetReason::configChanged, ResetReason::stopped})
        addEvent(-0.5, engine_event::Reset{reason});
    for (const ShortcutStatus status :
         {ShortcutStatus::notNeeded, ShortcutStatus::running, ShortcutStatus::unavailable})
        addEvent(-0.0125, engine_event::ShortcutStatusChanged{status});
    addEvent(0, engine_event::GuestKeySent{"r", {96, {}}});
    return entries;
}

ReportInput fullInput() {
    ReportInput input;
    input.generatedAt = "2026-11-16T10:42:23+09:00";
    input.appVersion = "0.1.0";
    input.macOSVersion = "14.5.0";
    input.architecture = "arm64";
    input.inputMonitoringGranted = true;
    input.engineState = engine_state::Degraded{DegradedReason::tapDisabled};
    input.shortcutStatus = ShortcutStatus::unavailable;
    const ShortcutKey keys{49, {ModifierKey::rightCommand, ModifierKey::leftShift}};
    input.rules = {{true, trigger::Shortcut{keys}, "com.a", "com.b"},
                   {false, trigger::ModifierTap{ModifierKey::rightCommand}, "com.b", "com.c"}};
    input.detectedApps = {"Logi Options+", "keyd"};
    input.warnings = {conflict_warning::TriggerArrivesAsOtherKey{ModifierKey::rightCommand},
                      conflict_warning::RepeatedTapDisabled{3}, conflict_warning::RepeatedSwitchFailures{12}};
    input.entries = everyEntry();
    return input;
}

TEST(Report, tellsEverythingInFixedWords) {
    // Where one is installed: a locale that writes a comma in numbers, as programs with windows have it.
    for (const char* locale : {"de_DE.UTF-8", "fr_FR.UTF-8"}) std::setlocale(LC_NUMERIC, locale);
    EXPECT_EQ(report_builder::build(fullInput()), golden("full_report.txt"));
    ReportInput empty;
    empty.generatedAt = "now";
    empty.appVersion = "dev";
    empty.macOSVersion = "x";
    empty.architecture = "y";
    empty.accessibilityGranted = true;
    EXPECT_EQ(report_builder::build(empty), golden("empty_report.txt"));
}

TEST(Report, survivesTimesThatAreNoTimes) {
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double bad : {std::nan(""), infinity, -infinity, 1.7e308}) {
        ReportInput input;
        const auto reset = diagnostic_kind::Engine{engine_event::Reset{ResetReason::tapDisabled}};
        const auto slow = diagnostic_kind::Engine{engine_event::Switched{"r", "a", "b", false, bad}};
        input.entries = {{bad, reset}, {1, slow}, {-bad, slow}};
        const std::string report = report_builder::build(input);
        EXPECT_NE(report.find("리셋: tapDisabled\n"), std::string::npos);
        EXPECT_EQ(std::count(report.begin(), report.end(), '\n'), 22);
        EXPECT_EQ(conflict_analyzer::maxInWindow({bad, 1, 2, bad, 3}), 3);
    }
}

TEST(BugReportMail, escapesEverythingThatIsNoPlainText) {
    EXPECT_EQ(
        bug_report_mail::composeURL("1 & 2"),
        "mailto:support@hopsel.example"
        "?subject=Hopsel%20%EB%B2%84%EA%B7%B8%20%EB%A6%AC%ED%8F%AC%ED%8A%B8%20(1%20%26%202)"
        "&body=%EC%96%B4%EB%96%A4%20%EB%AC%B8%EC%A0%9C%EA%B0%80%20%EC%9E%88%EC%97%88%EB%8A%94%EC%A7%80%20"
        "%ED%95%9C%EB%91%90%20%EC%A4%84%20%EC%A0%81%EA%B3%A0,%20%ED%81%B4%EB%A6%BD%EB%B3%B4%EB%93%9C%EC%97%90"
        "%20%EB%B3%B5%EC%82%AC%EB%90%9C%20%EB%A6%AC%ED%8F%AC%ED%8A%B8%EB%A5%BC%20%EC%9D%B4%20"
        "%EC%95%84%EB%9E%98%EC%97%90%20%EB%B6%99%EC%97%AC%EB%84%A3%EC%96%B4%20%EC%A3%BC%EC%84%B8%EC%9A%94%20"
        "(%E2%8C%98V).%0A%0A");
    EXPECT_EQ(bug_report_mail::suggestedFileName("20261116-104223"), "Hopsel-report-20261116-104223.txt");
}

} // namespace
} // namespace hopsel
