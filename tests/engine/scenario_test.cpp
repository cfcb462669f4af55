// What the engine makes of key presses, gate by gate.
#include "scenario.h"

#include <gmock/gmock.h>

namespace hopsel {
namespace {

struct Case {
    std::string name;
    std::string script;
    std::string outcomes;
};

std::ostream& operator<<(std::ostream& stream, const Case& scenario) { return stream << scenario.script; }

class EngineScenario : public testing::TestWithParam<Case> {};

TEST_P(EngineScenario, comesOut) { EXPECT_EQ(Scenario().run(GetParam().script), GetParam().outcomes); }

auto nameOf = [](const auto& info) { return info.param.name; };

const Case taps[]{
    {"tap_toggles_and_toggles_back", "rcmd+ 200ms rcmd- 100ms rcmd+ 200ms rcmd-", "A>B, B>A"},
    {"tap_counts_up_to_the_limit", "rcmd+ 500ms rcmd-", "A>B"},
    {"long_hold_does_not_fire", "rcmd+ 501ms rcmd-", ""},
    {"combination_does_not_fire", "rcmd+ c+ c- rcmd-", ""},
    {"click_cancels", "rcmd+ click rcmd-", ""},
    {"release_of_an_earlier_letter_does_not_cancel", "a+ rcmd+ a- rcmd-", "A>B"},
    {"caps_lock_does_not_cancel", "rcmd+ caps rcmd-", "A>B"},
    {"earlier_modifier_cancels", "lshift+ rcmd+ lshift- rcmd-", ""},
    {"later_modifier_cancels", "rcmd+ lshift+ lshift- rcmd-", ""},
    {"two_triggers_cancel_each_other", "rcmd+ ropt+ rcmd- ropt-", ""},
    {"other_side_is_another_key", "lcmd+ lcmd-", ""},
    {"lost_release_costs_one_tap_only", "rcmd+ rcmd~ a+ a- | rcmd+ rcmd-", "A>B"},
    {"lost_release_does_not_fire_late", "rcmd+ rcmd~ a+ a- rcmd-", ""},
    {"lost_release_of_another_modifier_does_not_cancel", "lshift+ lshift~ rcmd+ rcmd-", "A>B"},
    {"keyboard_without_sides_taps", "sideless rcmd+ rcmd-", "A>B"},
    {"own_events_are_ignored", "synthetic rcmd+ rcmd- rcmd+ user a+ rcmd-", ""},
    {"third_source_goes_to_a", "ropt+ ropt- 10ms rcmd+ rcmd-", "A>C, C>A"},
};

const Case shortcuts[]{
    {"shortcut_is_swallowed_whole_and_fires_once", "lshift+ space+ space* space* space- lshift-",
     "no space+, no space*, no space*, no space-, A>B"},
    {"shortcut_key_outlasts_its_modifier", "lshift+ space+ lshift- space* space-",
     "no space+, no space*, no space-, A>B"},
    {"shortcut_on_the_other_side_passes", "rshift+ space+ space-", ""},
    {"shortcut_with_one_modifier_more_passes", "lshift+ rshift+ space+ space- rshift- lctrl+ space+", ""},
    {"shortcut_ignores_caps_lock", "caps lshift+ space+", "no space+, A>B"},
    {"repeat_of_a_key_that_passed_passes", "space+ lshift+ space* space-", ""},
    {"shortcut_after_a_lost_key_up_starts_afresh", "lshift+ space+ 10ms space+ 10ms lshift- space+ space-",
     "no space+, A>B, no space+, B>A"},
    {"swallowed_key_cancels_a_tap", "rcmd+ f5+ f5- rcmd-", ""},
    {"swallowed_key_spoils_a_tap_begun_before_it", "f5+ rcmd+ f5* f5- rcmd-", "no f5+, no f5*, no f5-, A>B"},
    {"keyboard_without_sides_cannot_hold_a_shortcut", "sideless lshift+ space+", ""},
    {"own_shortcut_events_are_ignored", "synthetic f5+ f5-", ""},
    {"quick_triggers_are_performed_in_order", "rcmd+ rcmd- f5+ f5- rcmd+ rcmd-",
     "no f5+, no f5-, A>B, B>C, C>A"},
    {"switching_off_lets_the_key_up_through", "f5+ stop f5-", "no f5+, reset stopped, stopped, filter off"},
};

const Case gates[]{
    {"secure_at_the_press_suppresses", "secure rcmd+ plain rcmd-", "suppressed cmd"},
    {"secure_at_the_release_suppresses", "rcmd+ secure rcmd-", "suppressed cmd"},
    {"secure_in_between_does_not", "rcmd+ secure plain rcmd-", "A>B"},
    {"secure_press_is_forgotten_after_its_tap", "secure rcmd+ plain rcmd- | rcmd+ rcmd-", "A>B"},
    {"secure_entry_does_not_stop_shortcuts", "secure f5+", "no f5+, A>B"},
    {"remote_screen_is_left_alone", "screen rcmd+ rcmd- f5+ f5-", "skipped cmd: remote"},
    {"guest_gets_the_guest_key", "guest rcmd+ rcmd- f5+ f5-",
     "no f5+, no f5-, guest 49|leftControl, guest 49|leftControl"},
    {"guest_without_guest_key_is_left_alone", "guest no-guest-key rcmd+ rcmd- f5+ f5-",
     "skipped cmd: remote"},
    {"guest_key_that_cannot_be_sent_is_told", "guest guest-key-fails rcmd+ rcmd-",
     "skipped cmd: no guest key"},
    {"remote_gate_comes_before_missing_sources", "none-left screen rcmd+ rcmd-", "skipped cmd: remote"},
    {"remote_gate_can_be_taken_away", "screen no-standing-aside rcmd+ rcmd- f5+", "no f5+, A>B, B>C"},
    {"remote_application_gets_the_key_up", "f5+ 10ms guest f5-", "no f5+, A>B"},
    {"same_application_still_has_the_key_up_swallowed", "guest f5+ screen guest f5-",
     "no f5+, no f5-, guest 49|leftControl"},
    {"frontmost_flag_keeps_the_kind", "guest screen rcmd+ rcmd-", "guest 49|leftControl"},
    {"missing_source_is_named", "B-gone rcmd+ rcmd-", "skipped cmd: no B"},
    {"no_list_means_both_are_missing", "none-left rcmd+ rcmd-", "skipped cmd: no A B"},
    {"refused_switch_fails", "refused rcmd+ rcmd-", "failed B"},
    {"unverified_switch_counts_for_a_second", "unverified rcmd+ rcmd- 1000ms rcmd+ rcmd-", "A>B?, A>A?"},
    {"unverified_switch_is_forgotten_after_that", "unverified rcmd+ rcmd- 1001ms rcmd+ rcmd-", "A>B?, A>B?"},
    {"verified_switch_ends_an_unverified_one",
     "unverified rcmd+ rcmd- 10ms verified rcmd+ rcmd- 10ms rcmd+ rcmd-", "A>B?, A>A, A>B"},
    {"failed_switch_ends_an_unverified_one",
     "unverified rcmd+ rcmd- 10ms refused rcmd+ rcmd- 10ms accepted verified rcmd+ rcmd-",
     "A>B?, failed A, A>B"},
    {"verified_switch_does_not_outweigh_the_user", "rcmd+ rcmd- 10ms picks-A rcmd+ rcmd-", "A>B, A>B"},
    {"reset_forgets_an_unverified_switch", "unverified rcmd+ rcmd- 10ms wake | rcmd+ rcmd-", "A>B?"},
    {"stopping_drops_what_waits", "rcmd+ rcmd- stop | turn start rcmd+ rcmd-", "running, filter on, A>B"},
};

const Case captures[]{
    {"capture_takes_the_tap_of_a_trigger", "capture rcmd+ 100ms rcmd- 10ms rcmd+ rcmd-",
     "captured rightCommand, A>B"},
    {"capture_takes_any_modifier", "capture lctrl+ lctrl-", "captured leftControl"},
    {"capture_waits_through_other_keys", "capture a+ a- lshift+ space+ space- lshift- ropt+ ropt-",
     "captured rightOption"},
    {"capture_lasts_to_its_deadline", "capture 15000ms rcmd+ rcmd-", "captured rightCommand"},
    {"expired_capture_lets_the_event_go_on", "capture 15001ms rcmd+ rcmd-", "A>B"},
    {"click_ends_an_expired_capture_unharmed", "capture 16000ms click rcmd+ rcmd-", "A>B"},
    {"capture_drops_waiting_switches", "rcmd+ rcmd- capture 10ms", ""},
    {"second_capture_replaces_the_first", "capture capture rcmd+ rcmd-", "captured rightCommand"},
    {"cancelled_capture_captures_nothing", "capture rcmd+ cancel rcmd- rcmd+ rcmd-", "A>B"},
    {"capture_starts_with_no_key_held", "lshift+ capture rcmd+ rcmd-", "captured rightCommand"},
    {"cancelling_starts_with_no_key_held", "capture lshift+ cancel rcmd+ rcmd-", "A>B"},
    {"key_held_when_capture_begins_is_not_captured", "rcmd+ capture rcmd- cancel", ""},
    {"reset_keeps_the_capture", "capture wake rcmd+ rcmd-", "reset wake, captured rightCommand"},
    {"stopping_drops_the_capture", "capture stop start rcmd+ rcmd-",
     "reset stopped, stopped, filter off, running, filter on, A>B"},
};

const Case lifecycle[]{
    {"running_engine_does_not_start_again", "start", ""},
    {"stop_tells_in_order", "stop", "reset stopped, stopped, filter off"},
    {"stopped_engine_sees_nothing", "stop | rcmd+ rcmd- f5+ f5-", ""},
    {"stopped_engine_says_only_reset", "stop | stop wake", "reset stopped, reset wake"},
    {"key_held_across_a_start_does_not_tap", "stop rcmd+ start | rcmd-", ""},
    {"refused_start_degrades_once", "stop listener-refuses | start start", "degraded: permission"},
    {"degraded_engine_starts_again", "stop listener-refuses start listener-works | start",
     "running, filter on"},
    {"blip_resets", "rcmd+ listener-blips rcmd-", "reset tap"},
    {"lost_listener_degrades", "listener-lost", "reset tap, degraded: tap, filter off"},
    {"lost_listener_comes_back", "listener-lost | listener-lost start rcmd+ rcmd-",
     "running, filter on, A>B"},
    {"listener_lost_while_stopped_is_nothing", "stop | listener-lost listener-blips", ""},
    {"every_system_event_resets", "sleep wake lock unlock leave return",
     "reset sleep, reset wake, reset locked, reset unlocked, reset left, reset returned"},
    {"sleep_forgets_a_press", "rcmd+ sleep wake rcmd- | rcmd+ rcmd-", "A>B"},
    {"rules_without_shortcuts_need_no_filter", "tap-rules rcmd+ rcmd-", "reset config, filter off, A>B"},
    {"rules_without_taps_fire_no_tap", "shortcut-rules rcmd+ rcmd- f5+", "reset config, no f5+, A>B"},
    {"new_rules_forget_swallowed_keys", "f5+ all-rules f5-", "no f5+, reset config"},
    {"refused_filter_leaves_taps", "stop filter-refuses start | rcmd+ rcmd- f5+ f5-", "A>B"},
    {"refused_filter_is_told_once", "stop filter-refuses | start retry retry", "running, no filter"},
    {"filter_retry_succeeds", "stop filter-refuses start filter-works | retry retry", "filter on"},
    {"retry_without_need_is_nothing", "tap-rules | retry", ""},
    {"filter_blip_forgets_swallowed_keys_only", "f5+ rcmd+ filter-blips f5- rcmd-", "no f5+, A>B, B>A"},
    {"lost_filter_is_told_once", "filter-lost filter-lost", "no filter"},
    {"lost_filter_comes_back", "filter-lost | retry f5+", "filter on, no f5+, A>B"},
    {"unneeded_filter_is_forgotten", "filter-lost | tap-rules", "reset config, filter off"},
    {"filter_that_cannot_take_the_new_keys_is_retried_later",
     "filter-refuses-change all-rules filter-works retry", "reset config, no filter, filter on"},
};

INSTANTIATE_TEST_SUITE_P(taps, EngineScenario, testing::ValuesIn(taps), nameOf);
INSTANTIATE_TEST_SUITE_P(shortcuts, EngineScenario, testing::ValuesIn(shortcuts), nameOf);
INSTANTIATE_TEST_SUITE_P(gates, EngineScenario, testing::ValuesIn(gates), nameOf);
INSTANTIATE_TEST_SUITE_P(captures, EngineScenario, testing::ValuesIn(captures), nameOf);
INSTANTIATE_TEST_SUITE_P(lifecycle, EngineScenario, testing::ValuesIn(lifecycle), nameOf);

} // namespace
} // namespace hopsel
