// What a recording and a list of processes say about programs in the way.
#include "core/diagnostics/conflict_analyzer.h"
#include "core/diagnostics/known_apps.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hopsel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

diagnostic_kind::Engine reset(ResetReason reason) { return {engine_event::Reset{reason}}; }
diagnostic_kind::Engine switched(bool verified) {
    return {engine_event::Switched{"r", "a", "b", verified, 1}};
}
diagnostic_kind::Key key(KeyEventKind kind, KeyVerdict verdict = KeyVerdict::passed) {
    return {kind, {}, verdict};
}

TEST(Warnings, comeFromTheDensestMinute) {
    const auto disabled = reset(ResetReason::tapDisabled);
    const DiagnosticEntries atTheLimit{{0, disabled}, {30, disabled}, {60, disabled}};
    EXPECT_THAT(conflict_analyzer::warnings(atTheLimit, std::nullopt),
                ElementsAre(conflict_warning::RepeatedTapDisabled{3}));
    const DiagnosticEntries tooSlow{{0, disabled}, {30, disabled}, {60.5, disabled}};
    EXPECT_THAT(conflict_analyzer::warnings(tooSlow, std::nullopt), IsEmpty());

    const diagnostic_kind::Engine failed{engine_event::SwitchFailed{"r", "b", select_result::NotFound{}}};
    const DiagnosticEntries mixed{
        {500, switched(false)}, {0, failed},          {1, failed},     {2, switched(true)},
        {3, switched(false)},   {4, disabled},        {5, disabled},   {6, disabled},
        {7, disabled},          {300, disabled},      {301, disabled}, {8, reset(ResetReason::sleep)},
        {400, switched(true)},  {401, switched(true)}};
    const conflict_analyzer::Probe probe{ModifierKey::rightOption, ProbeResult::arrivedAsOtherKey};
    EXPECT_THAT(conflict_analyzer::warnings(mixed, probe),
                ElementsAre(conflict_warning::TriggerArrivesAsOtherKey{ModifierKey::rightOption},
                            conflict_warning::RepeatedTapDisabled{4},
                            conflict_warning::RepeatedSwitchFailures{3}))
        << "not in the order of time, and not the totals";
    for (const ProbeResult result : {ProbeResult::received, ProbeResult::noSignal})
        EXPECT_THAT(
            conflict_analyzer::warnings({}, conflict_analyzer::Probe{ModifierKey::rightOption, result}),
            IsEmpty());
}

TEST(Probe, isDecidedByTheFirstPressOfExactlyTheTrigger) {
    using namespace key_event_kind;
    const auto trigger = ModifierKey::rightCommand;
    const auto press = key(ModifierDown{trigger}, KeyVerdict::suppressed);
    const auto opposite = key(ModifierDown{ModifierKey::leftCommand});
    const struct {
        DiagnosticEntries entries;
        ProbeResult result;
    } cases[] = {
        {{}, ProbeResult::noSignal},
        {{{0, switched(true)}, {1, key(ModifierUp{trigger})}, {2, key(KeyUp{})}, {3, key(MouseDown{})}},
         ProbeResult::noSignal},
        {{{0, opposite}}, ProbeResult::arrivedAsOtherKey},
        {{{0, key(KeyDown{})}, {1, key(ModifierUp{trigger})}}, ProbeResult::arrivedAsOtherKey},
        {{{0, key(KeyDown{})}, {1, opposite}, {2, press}}, ProbeResult::received},
        {{{0, press}, {1, opposite}}, ProbeResult::received},
    };
    for (const auto& each : cases) EXPECT_EQ(conflict_analyzer::probe(each.entries, trigger), each.result);
}

TEST(KnownApps, areFoundByTheBeginningOfAnIdentifierInTheOrderOfTheTable) {
    const auto names = [](const std::vector<std::string>& running) {
        std::vector<std::string> found;
        for (const KnownApp& app : process_scanner::detect(running, known_apps::all()))
            found.emplace_back(app.name);
        return found;
    };
    EXPECT_THAT(
        names({"com.LogiTech.manager", "com.logi.optionsplus", "org.pqrs.Karabiner-Elements.Settings"}),
        ElementsAre("Karabiner-Elements", "Logi Options+"));
    EXPECT_THAT(names({"input-remapper-gtk", "XREMAP", "keyd", "xcape"}),
                ElementsAre("keyd", "xremap", "Input Remapper", "xcape"));
    EXPECT_THAT(names({"", "com.logi", "my.com.logi.x", "\xff\xfe", std::string(1 << 20, 'k')}), IsEmpty());
}

} // namespace
} // namespace hopsel
