#include "session/x_layouts.h"

#include "session/child_process.h"
#include "session/x_xkb.h"

#include <stdexcept>

namespace hopsel::session {

void setLayouts(const std::string& layouts, const std::string& variants, const std::string& options) {
    ChildProcess::Options command;
    command.program = "setxkbmap";
    command.package = "x11-xkb-utils";
    // An empty option first removes those that were set.
    command.arguments = {"-layout", layouts, "-variant", variants, "-option", ""};
    if (!options.empty()) command.arguments.insert(command.arguments.end(), {"-option", options});
    runProgram(command);
}

std::uint8_t useXkb(XDisplay& display) {
    const auto cookie = xcb_xkb_use_extension(display.get(), 1, 0);
    const XOwned<xcb_xkb_use_extension_reply_t> reply(
        xcb_xkb_use_extension_reply(display.get(), cookie, nullptr));
    if (!reply || reply->supported == 0) throw std::runtime_error("the X server has no keyboard extension");
    return xcb_get_extension_data(display.get(), &xcb_xkb_id)->first_event;
}

XLayouts::XLayouts() : firstEvent_(useXkb(display_)) {
    xcb_xkb_select_events_details_t details{};
    details.affectState = details.stateDetails = XCB_XKB_STATE_PART_GROUP_LOCK;
    xcb_xkb_select_events_aux(display_.get(), XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_EVENT_TYPE_STATE_NOTIFY, 0, 0,
                              0, 0, &details);
    display_.roundTrip();
}

int XLayouts::lockedGroup() {
    const auto cookie = xcb_xkb_get_state(display_.get(), XCB_XKB_ID_USE_CORE_KBD);
    const XOwned<xcb_xkb_get_state_reply_t> reply(xcb_xkb_get_state_reply(display_.get(), cookie, nullptr));
    if (!reply) throw std::runtime_error("the X server is gone");
    return reply->lockedGroup;
}

void XLayouts::lockGroup(int group) { lockGroups({group}); }

void XLayouts::lockGroups(const std::vector<int>& groups) {
    for (const int group : groups) {
        xcb_xkb_latch_lock_state(display_.get(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1,
                                 static_cast<std::uint8_t>(group), 0, 0, 0);
    }
    display_.roundTrip();
}

bool XLayouts::waitForGroup(int group, std::chrono::milliseconds timeout) {
    int current = lockedGroup();
    const auto handle = [&](const xcb_generic_event_t& event) {
        const auto& notify = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
        if (typeOf(event) == firstEvent_ && notify.xkbType == XCB_XKB_STATE_NOTIFY) current = lockedGroup();
    };
    return display_.waitFor(handle, [&] { return current == group; }, timeout);
}

} // namespace hopsel::session
