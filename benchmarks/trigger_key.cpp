#include "benchmarks/trigger_key.h"

#include "session/x_keyboard.h"
#include "session/x_xkb.h"

#include <stdexcept>
#include <xcb/xtest.h>

namespace hopsel::bench {

using namespace std::chrono_literals;
using namespace session;

namespace {

constexpr std::uint8_t xOffset = 8;
constexpr std::uint8_t triggerCode = key::rightSuper + xOffset;
constexpr std::uint8_t letterCode = key::a + xOffset;

constexpr auto patience = 5s;
/// Longer than anything that a switch leaves to be done: a few milliseconds after it the icon is another.
constexpr auto quietMoment = 10ms;

} // namespace

TriggerKey::TriggerKey() : firstXkbEvent_(useXkb(display_)) {
    // All of the state: where a key's action locks the group, the server does not say that the lock changed.
    xcb_xkb_select_events_details_t details{};
    details.affectState = details.stateDetails = 0x3FFF;
    xcb_xkb_select_events_aux(display_.get(), XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_EVENT_TYPE_STATE_NOTIFY, 0, 0,
                              0, 0, &details);
    const auto cookie = xcb_xkb_get_state(display_.get(), XCB_XKB_ID_USE_CORE_KBD);
    const XOwned<xcb_xkb_get_state_reply_t> reply(xcb_xkb_get_state_reply(display_.get(), cookie, nullptr));
    if (!reply) throw std::runtime_error("the X server is gone");
    group_ = reply->lockedGroup;
}

void TriggerKey::post(std::uint8_t code, bool isDown) {
    xcb_test_fake_input(display_.get(), isDown ? XCB_KEY_PRESS : XCB_KEY_RELEASE, code, XCB_CURRENT_TIME,
                        XCB_WINDOW_NONE, 0, 0, 0);
}

bool TriggerKey::waitForSwitch(std::chrono::milliseconds timeout) {
    const int before = group_;
    const auto handle = [&](const xcb_generic_event_t& event) {
        const auto& notify = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
        if (typeOf(event) != firstXkbEvent_ || notify.xkbType != XCB_XKB_STATE_NOTIFY) return;
        if (notify.lockedGroup == group_) return;
        group_ = notify.lockedGroup;
        switchedAt_ = monotonicSeconds();
    };
    return display_.waitFor(handle, [&] { return group_ != before; }, timeout);
}

std::optional<double> TriggerKey::tap(std::chrono::milliseconds hold, std::chrono::milliseconds timeout) {
    post(triggerCode, true);
    // A switch in here is a late one, of an earlier tap.
    waitForSwitch(hold);
    const double posted = monotonicSeconds();
    post(triggerCode, false);
    if (!waitForSwitch(timeout)) return std::nullopt;
    return switchedAt_ - posted;
}

double TriggerKey::unhurriedTap() {
    const auto seconds = tap(quietMoment, patience);
    if (!seconds) throw std::runtime_error("a tap of the trigger key switched nothing");
    waitForSwitch(quietMoment);
    return *seconds;
}

double TriggerKey::tapUntilSwitched() {
    const Deadline deadline(patience);
    const int before = group_;
    while (group_ == before) {
        tap(1ms, 1ms);
        if (deadline.hasPassed()) throw std::runtime_error("no tap of the trigger key switches anything");
    }
    return switchedAt_;
}

void TriggerKey::typeThenTap(int letters) {
    for (int i = 0; i < letters; ++i) {
        post(letterCode, true);
        post(letterCode, false);
    }
    post(triggerCode, true);
    post(triggerCode, false);
    if (!waitForSwitch(patience)) throw std::runtime_error("a tap after typing switched nothing");
}

} // namespace hopsel::bench
