#include "hook_rig.h"

#include "core/keys/event_normalizer.h"
#include "platform/linux/base/main_loop.h"

#include <stdexcept>

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
        std::string operator()(key_event_kind::MouseDown down) { return down.isWheel ? "wheel" : "click"; }
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

void HookRig::typeShortcut() {
    keyboard->press(key::leftShift);
    keyboard->tap(key::space);
    keyboard->release(key::leftShift);
}

void HookRig::settle() {
    const std::size_t heardBefore = events.size();
    const std::size_t keysBefore = window->records().size();
    keyboard->tap(key::q);
    const bool heardIt = runLoopUntil(
        [&] { return events.size() >= heardBefore + 2 && events.back().type == RawEventType::keyUp; });
    const bool gotIt = window->waitFor([&](const XTestWindow::Records& records) {
        return records.size() > keysBefore && records.back().kind == XRecord::Kind::keyRelease &&
               records.back().code == key::q;
    });
    if (!heardIt) throw std::runtime_error("the listener did not hear the last key");
    if (!gotIt) throw std::runtime_error("the window did not get the last key");
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
