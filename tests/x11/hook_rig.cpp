#include "hook_rig.h"

#include "core/keys/event_normalizer.h"
#include "core/platform/linux/main_loop.h"

namespace hopsel::test {

namespace {

std::string text(const KeyEventKind& kind) {
    struct Text {
        std::string operator()(key_event_kind::ModifierDown down) {
            return "+" + std::string(rawValue(down.key));
        }
        std::string operator()(key_event_kind::ModifierUp up) { return "-" + std::string(rawValue(up.key)); }
        std::string operator()(key_event_kind::KeyDown) { return "k+"; }
        std::string operator()(key_event_kind::KeyUp) { return "k-"; }
        std::string operator()(key_event_kind::MouseDown) { return "click"; }
    };
    return std::visit(Text{}, kind);
}

} // namespace

HookRig::HookRig(const std::string& layouts, bool withWindowManager, const std::string& windowManagerConfig) {
    setLayouts(layouts);
    if (withWindowManager) server.startWindowManager(windowManagerConfig);
    window = std::make_unique<XTestWindow>();
    keyboard = std::make_unique<XKeyboard>();
    hook = std::make_shared<X11KeyHook>(uptimeSeconds);
    listen = std::make_unique<X11ListenSource>(hook);
    filter = std::make_unique<X11ShortcutSource>(hook, log);
    listen->onEvent = [this](const RawEvent& event) { events.push_back(event); };
    listen->onDisabled = [this](bool) { ++disabled; };
    filter->onInput = [this](const ShortcutInput& input) {
        asked.push_back(input);
        if (input.synthetic) return false;
        const ShortcutDecision decision = matcher.handle(input);
        if (decision.fire) fired.push_back(*decision.fire);
        return decision.consume;
    };
    filter->onDisabled = [this](bool) { ++filterDisabled; };
}

void HookRig::start(const ShortcutSet& shortcuts) {
    matcher = ShortcutMatcher(shortcuts);
    listen->start();
    filter->setShortcuts(shortcuts);
    filter->start();
}

void HookRig::settle() {
    const std::size_t heardBefore = events.size();
    const std::size_t keysBefore = window->records().size();
    keyboard->tap(key::q);
    runLoopUntil(
        [&] { return events.size() >= heardBefore + 2 && events.back().type == RawEventType::keyUp; });
    window->waitFor([&](const XTestWindow::Records& records) {
        return records.size() > keysBefore && records.back().kind == XRecord::Kind::keyRelease &&
               records.back().code == key::q;
    });
}

void HookRig::settleWindowManager() {
    // Any window may ask for the extents of its future frame; the answer is a property on it.
    XDisplay display;
    const xcb_window_t asker = xcb_generate_id(display.get());
    const std::uint32_t wanted = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(display.get(), XCB_COPY_FROM_PARENT, asker, display.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_COPY_FROM_PARENT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &wanted);
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = asker;
    message.type = display.atom("_NET_REQUEST_FRAME_EXTENTS");
    xcb_send_event(display.get(), 0, display.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
    display.flush();
    bool answered = false;
    display.waitFor([&](const auto& event) { answered |= typeOf(event) == XCB_PROPERTY_NOTIFY; },
                    [&] { return answered; }, std::chrono::seconds(5));
}

std::string HookRig::heard() const {
    EventNormalizer normalizer;
    std::string all;
    for (const RawEvent& raw : events) {
        const auto event = normalizer.normalize(raw);
        if (!event) continue;
        if (!all.empty()) all += ' ';
        all += (raw.synthetic ? "own:" : "") + text(event->kind);
    }
    return all;
}

} // namespace hopsel::test
