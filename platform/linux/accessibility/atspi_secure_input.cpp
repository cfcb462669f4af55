#include "platform/linux/accessibility/atspi_secure_input.h"

namespace hopsel {

namespace {

const char* words(SecureInputState state) {
    switch (state) {
    case SecureInputState::unavailable: return "no accessibility bus: password fields are not recognised";
    case SecureInputState::off: return "accessibility is off: few programs tell of password fields";
    case SecureInputState::watching: return "accessibility is on: password fields are recognised";
    }
    return "";
}

} // namespace

AtspiSecureInput::AtspiSecureInput(std::shared_ptr<BusLink> sessionBus, Log& log)
    : log_(log), bus_(std::move(sessionBus), [this] { update(); }) {}

void AtspiSecureInput::windowChanged() {
    if (focus_) focus_->check();
}

void AtspiSecureInput::retry() {
    bus_.retry();
    if (focus_) focus_->check();
}

void AtspiSecureInput::update() {
    if (!bus_.isConnected())
        focus_.reset();
    else if (!focus_)
        focus_ = std::make_unique<PasswordFocus>(bus_.link());
    const SecureInputState state = !bus_.isConnected() ? SecureInputState::unavailable
                                   : bus_.isEnabled()  ? SecureInputState::watching
                                                       : SecureInputState::off;
    if (state == state_) return;
    state_ = state;
    log_.write(Log::Level::info, "secureInput", words(state));
    if (const auto callback = onStateChange) callback();
}

} // namespace hopsel
