#include "platform/linux/x11/x11_key_hook_session.h"

#include "platform/linux/x11/xkb_extension.h"

#include <QEvent>
#include <algorithm>
#include <utility>

namespace hopsel {

namespace {

struct EventSelection {
    xcb_input_event_mask_t header;
    std::uint32_t mask;
};

/// Without the signal: a key waits for this.
class Notifier final : public QSocketNotifier {
  public:
    Notifier(const X11Connection& connection, std::function<void()> dispatch)
        : QSocketNotifier(connection.fileDescriptor(), QSocketNotifier::Read),
          dispatch_(std::move(dispatch)) {}

  protected:
    bool event(QEvent* event) override {
        if (event->type() != QEvent::SockAct) return QSocketNotifier::event(event);
        dispatch_();
        return true;
    }

  private:
    std::function<void()> dispatch_;
};

/// A notifier may be the one whose signal we are in.
void unwatch(QSocketNotifier* notifier) {
    if (notifier == nullptr) return;
    notifier->setEnabled(false);
    notifier->deleteLater();
}

} // namespace

X11KeyHookSession::X11KeyHookSession(const std::function<void()>& dispatch)
    : grabs(primary, helper), hold(primary, helper) {
    for (X11Connection* each : {&primary, &helper}) each->handle();
    xinputOpcode = x11_input_devices::requireXInput2(primary);
    x11_input_devices::requireXInput2(helper);
    xkbFirstEvent = x11_input_devices::requireXkb(primary);
    hasXTest = x11_input_devices::hasXTest(primary);
    selectEvents();
    masters = x11_input_devices::masterKeyboards(primary);
    primaryNotifier_ = new Notifier(primary, dispatch);
    helperNotifier_ = new Notifier(helper, dispatch);
}

X11KeyHookSession::~X11KeyHookSession() {
    unwatch(primaryNotifier_);
    unwatch(helperNotifier_);
}

MasterKeyboard X11KeyHookSession::master(XDeviceId keyboard) const {
    const auto found = std::find_if(masters.begin(), masters.end(),
                                    [&](const MasterKeyboard& m) { return m.keyboard == keyboard; });
    return found != masters.end() ? *found : MasterKeyboard{.keyboard = keyboard};
}

void X11KeyHookSession::selectEvents() {
    // Of the master devices: asking for all devices would bring every raw event twice.
    const EventSelection keys{{.deviceid = XCB_INPUT_DEVICE_ALL_MASTER, .mask_len = 1},
                              XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS |
                                  XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE |
                                  XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS};
    const EventSelection devices{{.deviceid = XCB_INPUT_DEVICE_ALL, .mask_len = 1},
                                 XCB_INPUT_XI_EVENT_MASK_HIERARCHY};
    xcb_input_xi_select_events(primary.get(), primary.root(), 1, &keys.header);
    xcb_input_xi_select_events(primary.get(), primary.root(), 1, &devices.header);

    xcb_xkb_select_events_details_t details{};
    details.affectNewKeyboard = details.newKeyboardDetails = XCB_XKB_NKN_DETAIL_KEYCODES;
    details.affectState = details.stateDetails = XCB_XKB_STATE_PART_MODIFIER_LOCK;
    constexpr std::uint16_t mapParts = XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
    xcb_xkb_select_events_aux(primary.get(), XCB_XKB_ID_USE_CORE_KBD,
                              XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY |
                                  XCB_XKB_EVENT_TYPE_STATE_NOTIFY,
                              0, 0, mapParts, mapParts, &details);
    primary.flush();
}

} // namespace hopsel
