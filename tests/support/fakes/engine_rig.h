// An engine with a fake platform around it, and a keyboard that feeds both of its sources as a platform does:
// the filter sees a key first, and what it swallows the listener never gets.
#pragma once

#include "core/engine/engine_coordinator.h"
#include "support/fakes/engine_fakes.h"

namespace hopsel::fakes {

inline Rule tapRule(std::string id, ModifierKey key, const std::string& sourceA, const std::string& sourceB) {
    return {std::move(id), true, trigger::ModifierTap{key},
            action::Toggle{{sourceA, sourceA}, {sourceB, sourceB}}};
}

inline Rule shortcutRule(std::string id, ShortcutKey key, const std::string& sourceA,
                         const std::string& sourceB) {
    return {std::move(id), true, trigger::Shortcut{key},
            action::Toggle{{sourceA, sourceA}, {sourceB, sourceB}}};
}

/// Stopped and without rules until the test says otherwise. Callbacks reach it through `this`: it stays in
/// place.
class EngineRig {
  public:
    EngineRig() {
        EngineCoordinator::Parts parts;
        parts.source = source;
        parts.shortcutSource = filter;
        parts.service = service;
        parts.secureInput = secureInput;
        parts.guestKeySender = guestKeys;
        parts.clock = [this] { return time.now; };
        parts.schedule = [this](std::function<void()> task) { scheduler.tasks.push_back(std::move(task)); };
        engine = EngineCoordinator::create(std::move(parts));
        engine->setOnEvent([this](const EngineEvent& event) { events.push_back(event); });
    }
    EngineRig(const EngineRig&) = delete;
    EngineRig& operator=(const EngineRig&) = delete;

    void press(ModifierKey key) {
        held.insert(key);
        changeFlags(keyCode(key));
    }
    void release(ModifierKey key) {
        held.remove(key);
        changeFlags(keyCode(key));
    }
    void changeFlags(std::uint16_t code) { listen(RawEventType::flagsChanged, code); }
    void click() { listen(RawEventType::mouseDown); }

    /// True when the filter swallowed the event.
    bool key(std::uint16_t code, ShortcutInput::Kind kind, bool isRepeat = false) {
        if (filter->onInput({kind, code, flags(), isRepeat, synthetic})) return true;
        listen(kind == ShortcutInput::Kind::keyDown ? RawEventType::keyDown : RawEventType::keyUp);
        return false;
    }

    VirtualTime time;
    ManualScheduler scheduler;
    std::shared_ptr<FakeEventSource> source = std::make_shared<FakeEventSource>();
    std::shared_ptr<FakeShortcutSource> filter = std::make_shared<FakeShortcutSource>();
    std::shared_ptr<FakeInputSourceService> service = std::make_shared<FakeInputSourceService>();
    std::shared_ptr<FakeSecureInput> secureInput = std::make_shared<FakeSecureInput>();
    std::shared_ptr<FakeGuestKeySender> guestKeys = std::make_shared<FakeGuestKeySender>();
    std::shared_ptr<EngineCoordinator> engine;
    std::vector<EngineEvent> events;

    ModifierSet held;       ///< the modifiers that are down on the keyboard
    bool tellsSides = true; ///< false: the keyboard sets the family bits only
    bool synthetic = false; ///< the next events are the program's own

  private:
    static constexpr std::uint64_t familyBits = 0x1E0000;

    std::uint64_t flags() const { return tellsSides ? flagsOf(held) : flagsOf(held) & familyBits; }
    void listen(RawEventType type, std::uint16_t code = 0) {
        source->onEvent({type, code, flags(), time.now, synthetic});
    }
};

} // namespace hopsel::fakes
