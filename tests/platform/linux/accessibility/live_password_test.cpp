// The whole way: a trigger tapped on a real keyboard while a real program asks for a password.
#include "accessible_desktop.h"
#include "platform/linux/accessibility/atspi_secure_input.h"
#include "platform/linux/x11/live_engine.h"
#include "support/bus_links.h"

#include <csignal>

using namespace hopsel;
using namespace hopsel::test;

namespace {

/// There before the engine, which is given the secure input.
struct SecureDesktop {
    AccessibleDesktop desktop;
    fakes::RecordingLog secureInputLog;
    std::shared_ptr<AtspiSecureInput> secureInput =
        std::make_shared<AtspiSecureInput>(linkTo(desktop.sessionBus.address()), secureInputLog);
};

class LivePassword : private SecureDesktop, public LiveEngine {
  protected:
    LivePassword() : LiveEngine(secureInput) { desktop.start(); }
    ~LivePassword() override {
        engine->stop();
        engine.reset();
        secureInput.reset();
    }
    std::unique_ptr<ChildProcess> startProgram() const {
        return desktop.startProgram(AccessibleDesktop::Toolkit::gtk);
    }
    bool isSecure() const { return secureInput->isEnabled(); }
};

TEST_F(LivePassword, TapSwitchesOutsideThePasswordFieldOnly) {
    const auto program = startProgram();
    ASSERT_TRUE(runLoopUntil([&] { return isSecure(); }));
    keyboard->tap(key::rightSuper);
    ASSERT_TRUE(runLoopUntil([&] {
        const auto* suppressed =
            events.empty() ? nullptr : std::get_if<engine_event::SwitchSuppressed>(&events.back());
        return suppressed != nullptr && suppressed->reason == SuppressReason::secureInput;
    }));
    EXPECT_EQ(layouts.lockedGroup(), 0);
    program->kill(SIGUSR2);
    ASSERT_TRUE(runLoopUntil([&] { return !isSecure(); }));
    keyboard->tap(key::rightSuper);
    EXPECT_TRUE(switchesReach(1));
    EXPECT_EQ(layouts.lockedGroup(), 1);
}

} // namespace
