#include "platform/linux/xkb/xkb_server.h"

#include "platform/linux/x11/x11_input_devices.h"
#include "platform/linux/x11/xkb_extension.h"

#include <QString>
#include <poll.h>
#include <string_view>

namespace hopsel {

namespace {

constexpr std::uint32_t maxPropertyWords = 4096;

std::vector<XkbLayout> layoutsIn(const xcb_get_property_reply_t* reply) {
    if (reply == nullptr || reply->format != 8) return {};
    const auto length = static_cast<std::size_t>(xcb_get_property_value_length(reply));
    return xkb_groups::parseRulesNames({static_cast<const char*>(xcb_get_property_value(reply)), length});
}

/// Atoms hold any bytes.
std::string printable(const char* bytes, int length) {
    QString text = QString::fromUtf8(bytes, length);
    text.removeIf([](QChar c) { return c.category() == QChar::Other_Control; });
    return text.simplified().left(64).toStdString();
}

} // namespace

XkbServer::XkbServer()
    : firstEvent_(x11_input_devices::requireXkb(connection_)),
      rulesNames_(connection_.intern("_XKB_RULES_NAMES")) {
    selectEvents();
}

void XkbServer::selectEvents() {
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection_.get(), connection_.root(), XCB_CW_EVENT_MASK, &mask);

    constexpr std::uint16_t types = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_STATE_NOTIFY |
                                    XCB_XKB_EVENT_TYPE_NAMES_NOTIFY | XCB_XKB_EVENT_TYPE_CONTROLS_NOTIFY;
    xcb_xkb_select_events_details_t details{};
    details.affectNewKeyboard = details.newKeyboardDetails =
        XCB_XKB_NKN_DETAIL_KEYCODES | XCB_XKB_NKN_DETAIL_DEVICE_ID;
    details.affectState = details.stateDetails =
        XCB_XKB_STATE_PART_GROUP_STATE | XCB_XKB_STATE_PART_GROUP_LOCK;
    details.affectNames = details.namesDetails = XCB_XKB_NAME_DETAIL_GROUP_NAMES;
    details.affectCtrls = details.ctrlDetails = XCB_XKB_CONTROL_GROUPS_WRAP;
    xcb_xkb_select_events_aux(connection_.get(), XCB_XKB_ID_USE_CORE_KBD, types, 0, 0, 0, 0, &details);
}

std::vector<XkbGroup> XkbServer::readGroups() {
    xcb_connection_t* c = connection_.get();
    const auto property =
        xcb_get_property(c, 0, connection_.root(), rulesNames_, XCB_ATOM_ANY, 0, maxPropertyWords);
    const auto controls = xcb_xkb_get_controls(c, XCB_XKB_ID_USE_CORE_KBD);
    const auto state = xcb_xkb_get_state(c, XCB_XKB_ID_USE_CORE_KBD);
    const XcbPtr<xcb_get_property_reply_t> propertyReply(xcb_get_property_reply(c, property, nullptr));
    const XcbPtr<xcb_xkb_get_controls_reply_t> controlsReply(
        xcb_xkb_get_controls_reply(c, controls, nullptr));
    const XcbPtr<xcb_xkb_get_state_reply_t> stateReply(xcb_xkb_get_state_reply(c, state, nullptr));
    if (!controlsReply || !stateReply) return {};

    noteLocked(stateReply->lockedGroup, state.sequence);
    stateSequence_ = state.sequence;
    wantedGroup_ = -1; // from here on its number may stand for another layout
    std::vector<std::string> names = readGroupNames();
    names.resize(controlsReply->numGroups);
    return xkb_groups::list(believed_.take(layoutsIn(propertyReply.get()), names), controlsReply->numGroups,
                            names);
}

std::vector<std::string> XkbServer::readGroupNames() {
    xcb_connection_t* c = connection_.get();
    const auto cookie = xcb_xkb_get_names(c, XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_NAME_DETAIL_GROUP_NAMES);
    const XcbPtr<xcb_xkb_get_names_reply_t> reply(xcb_xkb_get_names_reply(c, cookie, nullptr));
    if (!reply) return {};
    xcb_xkb_get_names_value_list_t values{};
    xcb_xkb_get_names_value_list_unpack(
        xcb_xkb_get_names_value_list(reply.get()), reply->nTypes, reply->indicators, reply->virtualMods,
        reply->groupNames, reply->nKeys, reply->nKeyAliases, reply->nRadioGroups, reply->which, &values);
    // Only the groups that have a name are in the list; a bit for each says which.
    std::vector<std::string> names;
    const xcb_atom_t* next = values.groups;
    for (unsigned bits = reply->groupNames; bits != 0; bits >>= 1U) {
        names.push_back((bits & 1U) != 0 ? atomName(*next++) : std::string());
    }
    return names;
}

std::string XkbServer::atomName(xcb_atom_t atom) {
    const auto cookie = xcb_get_atom_name(connection_.get(), atom);
    const XcbPtr<xcb_get_atom_name_reply_t> reply(
        xcb_get_atom_name_reply(connection_.get(), cookie, nullptr));
    if (!reply) return {};
    return printable(xcb_get_atom_name_name(reply.get()), xcb_get_atom_name_name_length(reply.get()));
}

void XkbServer::lockGroup(int index) {
    const auto request = xcb_xkb_latch_lock_state(connection_.get(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1,
                                                  static_cast<std::uint8_t>(index), 0, 0, 0);
    connection_.flush();
    lockSequence_ = request.sequence;
    wantedGroup_ = index;
    hasBeenLocked_ = false;
}

// Every notice counts, not only the last of those that are read at once: another program may have locked its
// group right after ours. Notices carry the number of the last request that the server had worked off. The
// first one from after ours also tells, by what was locked until then, of a request that changed nothing.
void XkbServer::noteLocked(int group, std::uint32_t sequence) {
    const bool isSinceRequest = static_cast<std::int32_t>(sequence - lockSequence_) >= 0;
    if (isSinceRequest && (group == wantedGroup_ || lockedGroup_ == wantedGroup_)) hasBeenLocked_ = true;
    lockedGroup_ = group;
}

void XkbServer::waitForNews(std::chrono::milliseconds atMost) const {
    pollfd socket{.fd = fileDescriptor(), .events = POLLIN, .revents = 0};
    poll(&socket, 1, static_cast<int>(atMost.count()));
}

XkbServer::News XkbServer::takeEvents() {
    News news;
    while (const auto event = connection_.nextEvent()) take(*event, news);
    return news;
}

void XkbServer::take(const xcb_generic_event_t& event, News& news) {
    const std::uint8_t type = eventType(event);
    if (type == XCB_PROPERTY_NOTIFY) {
        if (reinterpret_cast<const xcb_property_notify_event_t&>(event).atom == rulesNames_)
            news.groups = true;
    } else if (type == firstEvent_) {
        // All events of the extension share one code and have their kind in the same place.
        const auto& notify = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
        if (notify.xkbType == XCB_XKB_STATE_NOTIFY) {
            // An event from before the last answer arrives after it, and is out of date.
            const auto age = static_cast<std::int32_t>(event.full_sequence - stateSequence_);
            if (age >= 0) noteLocked(notify.lockedGroup, event.full_sequence);
            news.locked = true;
        } else {
            news.groups = true;
        }
    }
}

} // namespace hopsel
