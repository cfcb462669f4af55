// Secure text entry on Linux: a password field has the focus, as programs tell through the desktop's
// accessibility service.
//
// Made by the platform and shared with the engine; lives on the main thread and needs its event loop. As good
// as what programs tell: a field that had the focus before the service was found, and programs that describe
// nothing, count as no password. Whoever watches windows and the clock calls `windowChanged` and `retry`.
#pragma once

#include "core/platform/log.h"
#include "core/platform/secure_input.h"
#include "platform/linux/accessibility/accessibility_bus.h"
#include "platform/linux/accessibility/password_focus.h"

#include <memory>

namespace hopsel {

class AtspiSecureInput final : public SecureInputProviding {
  public:
    AtspiSecureInput(std::shared_ptr<BusLink> sessionBus, Log& log);

    bool isEnabled() const override { return focus_ && focus_->isPassword(); }
    SecureInputState state() const override { return state_; }

    /// Another window may have come to the front.
    void windowChanged();
    /// Every two seconds while needed: looks for a lost bus again, and asks the focused password field
    /// whether it still is.
    void retry();
    bool needsRetry() const { return bus_.needsRetry() || isEnabled(); }

  private:
    void update();

    Log& log_;
    SecureInputState state_ = SecureInputState::unavailable;
    std::unique_ptr<PasswordFocus> focus_;
    AccessibilityBus bus_;
};

} // namespace hopsel
