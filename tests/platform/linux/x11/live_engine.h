// An engine on a real X server: hook, XKB sources, window manager, a keyboard, and a window that records.
//
// Two rules toggle between the layouts us and ru: right Command tapped, and left Shift+Space. It runs once
// made.
#pragma once

#include "core/engine/engine_coordinator.h"
#include "core/platform/input_source_switcher.h"
#include "hook_rig.h"
#include "platform/linux/base/main_loop.h"
#include "platform/linux/x11/x11_guest_key_sender.h"
#include "platform/linux/xkb/xkb_input_sources.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace hopsel::test {

inline const InputSourceRef english{"xkb:us", "English"};
inline const InputSourceRef russian{"xkb:ru", "Russian"};

class LiveEngine : public testing::Test {
  protected:
    explicit LiveEngine(
        std::shared_ptr<SecureInputProviding> secureInput = std::make_shared<NoSecureInput>()) {
        setLayouts("us,ru");
        server.startWindowManager();
        window = std::make_unique<XTestWindow>();
        keyboard = std::make_unique<XKeyboard>();
        sources = std::make_shared<XkbInputSources>();
        hook = std::make_shared<X11KeyHook>([this] { return uptimeSeconds() + (paused += pause); });
        engine = EngineCoordinator::create({
            .source = std::make_shared<X11ListenSource>(hook),
            .shortcutSource = std::make_shared<X11ShortcutSource>(hook, log),
            .service = std::make_shared<LiveInputSourceService>(sources, uptimeSeconds, runFor),
            .secureInput = std::move(secureInput),
            .guestKeySender = std::make_shared<X11GuestKeySender>(hook, runFor),
            .clock = uptimeSeconds,
            .schedule = schedule,
        });
        engine->setOnEvent([this](const EngineEvent& event) { events.push_back(event); });
        engine->apply(
            {.schemaVersion = 2,
             .rules = {Rule::make(trigger::ModifierTap{ModifierKey::rightCommand},
                                  action::Toggle{english, russian}),
                       Rule::make(trigger::Shortcut{leftShiftSpace}, action::Toggle{english, russian})}});
        engine->start();
    }

    std::size_t switches() const {
        return static_cast<std::size_t>(
            std::count_if(events.begin(), events.end(), [](const EngineEvent& event) {
                const auto* switched = std::get_if<engine_event::Switched>(&event);
                return switched != nullptr && switched->verified;
            }));
    }
    bool switchesReach(std::size_t count) {
        return runLoopUntil([&] { return switches() >= count; });
    }
    /// A switch that must come comes after everything that was typed before it: so nothing else did.
    void expectNoSwitchSince(std::size_t before) {
        keyboard->tap(key::rightSuper);
        EXPECT_TRUE(switchesReach(before + 1));
        EXPECT_EQ(switches(), before + 1);
    }

    /// Of the process, each time that the hook looks at its clock.
    double pause = 0;
    double paused = 0;
    XServer server;
    XLayouts layouts;
    fakes::RecordingLog log;
    std::unique_ptr<XTestWindow> window;
    std::unique_ptr<XKeyboard> keyboard;
    std::shared_ptr<XkbInputSources> sources;
    std::shared_ptr<X11KeyHook> hook;
    std::shared_ptr<EngineCoordinator> engine;
    std::vector<EngineEvent> events;
};

} // namespace hopsel::test
