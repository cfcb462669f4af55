// What the engine makes of key presses, gate by gate. Taps, shortcuts and secure entry are the random
// stream's.
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

TEST_P(EngineScenario, ComesOut) { EXPECT_EQ(Scenario().run(GetParam().script), GetParam().outcomes); }

auto nameOf = [](const auto& info) { return info.param.name; };

const Case cases[]{
    // taps
    {"tap_toggles_and_toggles_back", "rcmd+ 200ms rcmd- 100ms rcmd+ 200ms rcmd-", "A>B, B>A"},
    {"earlier_letter_and_caps_lock_do_not_cancel", "a+ rcmd+ a- caps rcmd-", "A>B"},
    {"keyboard_without_sides_taps_and_has_no_shortcuts", "!sides rcmd lshift+ space+", "A>B"},
    // What is lost of a keyboard without sides would turn its next press into a release.
    {"lost_release_is_noticed_by_a_swallowed_key_up", "!sides f5+ ropt+ ropt~ f5- ropt+ a+ ropt-",
     "no f5+, no f5-, A>B"},
    {"lost_release_is_noticed_by_caps_lock", "!sides rcmd+ rcmd~ caps rcmd+ a+ rcmd-", ""},
    {"stopped_engine_keeps_no_keys", "!sides stop rcmd+ rcmd~ start | rcmd", "A>B"},
    {"own_events_are_ignored", "synthetic rcmd f5+ f5- rcmd+ !synthetic a+ rcmd-", ""},

    // shortcuts
    {"shortcut_is_swallowed_whole_and_fires_once", "lshift+ space+ space* lshift- space* space-",
     "no space+, no space*, no space*, no space-, A>B"},
    {"shortcut_after_a_lost_key_up_starts_afresh", "f5+ 10ms f5+ 10ms lshift+ f5+ f5-",
     "no f5+, A>B, no f5+, B>C"},
    {"first_enabled_rule_of_the_last_rules_wins", "other-rules | rcmd f5+ lshift+ space+",
     "no f5+, A>C, C>A"},
    {"switching_off_lets_the_key_up_through", "f5+ stop f5-", "no f5+, reset stopped, stopped, filter off"},

    // gates
    {"missing_sources_are_named_unless_a_remote_is_in_front",
     "B-gone rcmd 10ms none-left screen rcmd f5+ f5- 10ms local rcmd",
     "skipped cmd: no B, skipped cmd: remote, skipped cmd: no A B"},
    {"guest_gets_the_guest_key", "guest rcmd f5+",
     "no f5+, cmd guest 49|leftControl, f5 guest 49|leftControl"},
    {"guest_without_guest_key_is_left_alone", "guest !sends rcmd 10ms no-guest-key rcmd f5+",
     "skipped cmd: no guest key, skipped cmd: remote"},
    {"remote_application_gets_the_key_up", "f5+ 10ms guest f5-", "no f5+, A>B"},
    {"same_application_still_has_the_key_up_swallowed", "guest f5+ screen guest f5-",
     "no f5+, no f5-, f5 guest 49|leftControl"},
    {"failed_switch_says_why", "refused rcmd 10ms not-found f5+", "cmd failed B -50, no f5+, f5 failed B"},
    {"unverified_switch_counts_for_a_second", "!takes-effect rcmd 1000ms rcmd 1001ms rcmd",
     "A>B?, A>A?, A>B?"},
    {"waiting_for_a_switch_is_not_its_second", "!takes-effect slow rcmd 500ms rcmd", "A>B?, A>A?"},
    {"failed_switch_ends_an_unverified_one", "!takes-effect rcmd 10ms refused rcmd 10ms accepted rcmd",
     "A>B?, cmd failed A -50, A>B?"},
    {"verified_switch_ends_an_unverified_one", "!takes-effect rcmd 10ms takes-effect rcmd 10ms rcmd",
     "A>B?, A>A, A>B"},
    {"from_no_source_it_goes_to_the_first", "picks-nothing rcmd", "?>A"},
    {"late_switch_that_was_taken_back_no_longer_counts", "!takes-effect rcmd 600ms catches-up rcmd",
     "A>B?, A>B?"},
    {"verified_switch_does_not_outweigh_the_user", "rcmd 10ms picks-A rcmd", "A>B, A>B"},
    {"reset_forgets_an_unverified_switch", "!takes-effect rcmd 10ms wake | rcmd", "A>B?"},
    {"stopping_drops_what_waits", "rcmd stop | turn start rcmd", "running, filter on, A>B"},

    // captures
    {"capture_takes_one_tap_up_to_its_deadline", "capture 15000ms rcmd rcmd", "captured rightCommand, A>B"},
    {"capture_that_expired_takes_nothing", "capture 15001ms rcmd", "A>B"},
    {"capture_drops_what_waits", "rcmd capture turn", ""},
    {"captured_key_may_begin_the_next_capture", "capture-two rcmd ropt rcmd",
     "captured rightCommand, captured rightOption, A>B"},
    {"cancelled_capture_takes_nothing", "capture cancel rcmd", "A>B"},
    {"cancelling_no_capture_disturbs_no_tap", "rcmd+ cancel rcmd-", "A>B"},
    {"capture_waits_through_other_keys", "capture a+ lshift+ space+ lshift- ropt", "captured rightOption"},
    {"reset_keeps_the_capture", "capture wake rcmd", "reset wake, captured rightCommand"},
    {"stopping_drops_the_capture", "capture stop | start rcmd", "running, filter on, A>B"},

    // lifecycle
    {"stopped_engine_sees_nothing", "stop | rcmd f5+ f5- listener-lost listener-blips retry", ""},
    {"blip_resets", "rcmd+ listener-blips rcmd-", "reset tap"},
    {"lost_listener_degrades", "listener-lost listener-lost", "reset tap, degraded: tap, filter off"},
    {"refused_listener_degrades_once", "listener-lost | no-listener start start !no-listener start rcmd",
     "degraded: permission, running, filter on, A>B"},
    {"every_system_event_resets", "rcmd+ sleep wake lock unlock leave return rcmd-",
     "reset sleep, reset wake, reset locked, reset unlocked, reset left, reset returned"},
    {"rules_without_shortcuts_need_no_filter", "tap-rules retry rcmd", "reset config, filter off, A>B"},
    {"new_rules_forget_swallowed_keys", "f5+ all-rules f5-", "no f5+, reset config"},
    {"refused_filter_leaves_taps", "stop no-filter | start retry rcmd f5+", "running, no filter, A>B"},
    {"filter_blip_forgets_swallowed_keys_only", "f5+ rcmd+ filter-blips f5- rcmd-", "no f5+, A>B, B>A"},
    {"lost_filter_comes_back", "filter-lost filter-lost retry f5+", "no filter, filter on, no f5+, A>B"},
    {"filter_that_cannot_take_new_keys_starts_later", "no-change all-rules f5+ retry f5+",
     "reset config, no filter, filter on, no f5+, A>B"},
};

INSTANTIATE_TEST_SUITE_P(engine, EngineScenario, testing::ValuesIn(cases), nameOf);

} // namespace
} // namespace hopsel
