// What a recording says about programs in the way.
#include "core/diagnostics/conflict_analyzer.h"
#include "core/diagnostics/known_apps.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>
#include <string_view>
#include <utility>

namespace hopsel {
namespace {

using testing::ElementsAre;

diagnostic_kind::Engine reset(ResetReason reason) { return {engine_event::Reset{reason}}; }
diagnostic_kind::Engine switched(bool verified) {
    return {engine_event::Switched{"r", "a", "b", verified, 1}};
}
diagnostic_kind::Key key(KeyEventKind kind, KeyVerdict verdict = KeyVerdict::passed) {
    return {kind, {}, verdict};
}

TEST(Warnings, ComeFromTheDensestMinute) {
    const auto disabled = reset(ResetReason::tapDisabled);
    const DiagnosticEntries atTheLimit{{0, disabled}, {30, disabled}, {60, disabled}};
    EXPECT_THAT(conflict_analyzer::warnings(atTheLimit, std::nullopt),
                ElementsAre(conflict_warning::RepeatedTapDisabled{3}));
    const DiagnosticEntries tooSlow{{0, disabled}, {30, disabled}, {60.5, disabled}};
    EXPECT_THAT(conflict_analyzer::warnings(tooSlow, std::nullopt), testing::IsEmpty());

    const diagnostic_kind::Engine failed{engine_event::SwitchFailed{"r", "b", select_result::NotFound{}}};
    const DiagnosticEntries mixed{
        {500, switched(false)}, {0, failed},          {1, failed},
        {2, switched(true)},    {3, switched(false)}, {4, reset(ResetReason::sleep)}};
    const conflict_analyzer::Probe probe{ModifierKey::rightOption, ProbeResult::arrivedAsOtherKey};
    EXPECT_THAT(conflict_analyzer::warnings(mixed, probe),
                ElementsAre(conflict_warning::TriggerArrivesAsOtherKey{ModifierKey::rightOption},
                            conflict_warning::RepeatedSwitchFailures{3}));
}

TEST(Probe, IsDecidedByTheFirstPressOfExactlyTheTrigger) {
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
        {{{0, press}, {1, opposite}}, ProbeResult::received},
    };
    for (const auto& each : cases) EXPECT_EQ(conflict_analyzer::probe(each.entries, trigger), each.result);
}

TEST(KnownApps, AreFoundByWhatTheirProcessesAndBundlesAreCalled) {
    const std::pair<const char*, const char*> running[] = {
        {"org.pqrs.Karabiner-Menu", "Karabiner-Elements"},
        {"com.hegenberg.BetterTouchTool", "BetterTouchTool"},
        {"com.stairways.keyboardmaestro.engine", "Keyboard Maestro"},
        {"org.hammerspoon.Hammerspoon", "Hammerspoon"},
        {"com.logi.optionsplus", "Logi Options+"},
        {"com.logitech.manager", "Logi Options+"},
        {"jp.plentycom.boa.SteerMouse", "SteerMouse"},
        {"com.nuebling.mac-mouse-fix", "Mac Mouse Fix"},
        {"com.lujjjh.LinearMouse", "LinearMouse"},
        {"com.raycast.macos", "Raycast"},
        {"com.runningwithcrayons.Alfred", "Alfred"},
        {"com.knollsoft.Rectangle", "Rectangle"},
        {"com.parallels.desktop.console", "Parallels"},
        {"com.vmware.fusion", "VMware Fusion"},
        {"com.microsoft.rdc.macos", "Windows App / Remote Desktop"},
        {"keyd", "keyd"},
        {"kmonad", "KMonad"},
        {"kanata", "kanata"},
        {"xremap", "xremap"},
        {"input-remapper-service", "Input Remapper"},
        {"input-remap", "Input Remapper"},
        {"udevmon", "Interception Tools"},
        {"intercept", "Interception Tools"},
        {"evremap", "evremap"},
        {"hawck-inputd", "hawck"},
        {"xkeysnail", "xkeysnail"},
        {"toshy_tray", "Toshy"},
        {"xcape", "xcape"},
        {"ksuperkey", "ksuperkey"},
        {"autokey-gtk", "AutoKey"},
        {"espanso", "Espanso"},
        {"xbindkeys", "xbindkeys"},
        {"sxhkd", "sxhkd"},
        {"swhkd", "swhkd"},
        {"solaar", "Solaar"},
        {"io.github.pwr_Solaar.solaar", "Solaar"},
        {"logid", "logiops"},
        {"barrier", "Barrier / Input Leap / Synergy"},
        {"input-leap", "Barrier / Input Leap / Synergy"},
        {"synergy-core", "Barrier / Input Leap / Synergy"},
        {"deskflow", "Barrier / Input Leap / Synergy"},
    };
    std::set<std::string_view> found;
    for (const auto& [identifier, name] : running) {
        const auto apps = process_scanner::detect({identifier}, known_apps::all());
        ASSERT_EQ(apps.size(), 1U) << identifier;
        EXPECT_EQ(apps[0].name, name) << identifier;
        found.insert(apps[0].name);
    }
    EXPECT_EQ(found.size(), known_apps::all().size());
    EXPECT_TRUE(process_scanner::detect({"org.gnome.Terminal", "", "xkeyd"}, known_apps::all()).empty());
}

} // namespace
} // namespace hopsel
