// The report as whole texts, and the mail it goes with.
#include "core/diagnostics/bug_report_mail.h"
#include "core/diagnostics/report_builder.h"
#include "core/rules/temporary_folder.h"

#include <algorithm>
#include <clocale>
#include <gmock/gmock.h>

namespace hopsel {
namespace {

using Key = diagnostic_kind::Key;

DiagnosticEntries entriesOfEachKind() {
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
    addEvent(-2, engine_event::StateChanged{engine_state::Degraded{DegradedReason::permissionMissing}});
    addEvent(-1.5, engine_event::Switched{"r", std::nullopt, "com.b", true, 2.5});
    addEvent(-1.5, engine_event::SwitchFailed{"r", "com.b", select_result::Failed{-50}});
    addEvent(-1, engine_event::SwitchSuppressed{"r", SuppressReason::secureInput});
    addEvent(-1, engine_event::RuleSkipped{"r", skip_reason::GuestKeyUnavailable{}});
    addEvent(-1, engine_event::RuleSkipped{"r", skip_reason::BrokenSource{{"com.a", "com.b"}}});
    addEvent(-1, engine_event::RuleSkipped{"r", skip_reason::RemoteApp{}});
    addEvent(-1, engine_event::Switched{"r", "com.a", "com.b", false, 512.25});
    addEvent(-1, engine_event::SwitchFailed{"r", "com.b", select_result::NotFound{}});
    for (const ResetReason reason :
         {ResetReason::tapDisabled, ResetReason::sleep, ResetReason::wake, ResetReason::screenLocked,
          ResetReason::screenUnlocked, ResetReason::sessionInactive, ResetReason::sessionActive,
          ResetReason::configChanged, ResetReason::stopped})
        addEvent(-0.5, engine_event::Reset{reason});
    addEvent(-0.0125, engine_event::ShortcutStatusChanged{ShortcutStatus::unavailable});
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
    input.entries = entriesOfEachKind();
    return input;
}

TEST(Report, TellsEverythingInFixedWords) {
    // Where one is installed: a locale that writes a comma in numbers, as programs with windows have it.
    for (const char* locale : {"de_DE.UTF-8", "fr_FR.UTF-8"}) std::setlocale(LC_NUMERIC, locale);
    EXPECT_EQ(report_builder::build(fullInput()), contents(HOPSEL_FULL_REPORT));
}

TEST(Report, HasNoLineThatANameFromOutsideBegins) {
    const auto lines = [](const ReportInput& input) {
        const std::string text = report_builder::build(input);
        return std::count(text.begin(), text.end(), '\n');
    };
    ReportInput input = fullInput();
    const auto expected = lines(input);
    input.rules.front().sourceA = "com.a\n\n[경고]\r\u2028- 없음";
    input.detectedApps.front() += "\n- other";
    EXPECT_EQ(lines(input), expected);
    EXPECT_THAT(report_builder::build(input), testing::HasSubstr("com.a  [경고]  - 없음 ⇄ com.b"));
}

TEST(BugReportMail, EscapesEverythingThatIsNoPlainText) {
    const std::string url = bug_report_mail::composeURL("1 & 2");
    EXPECT_THAT(url,
                testing::HasSubstr("?subject=Hopsel%20%EB%B2%84%EA%B7%B8%20%EB%A6%AC%ED%8F%AC%ED%8A%B8%20"
                                   "(1%20%26%202)&body=%EC"));
    EXPECT_EQ(url.find_first_of("\"\n <>"), std::string::npos);
}

} // namespace
} // namespace hopsel
