#include "platform/linux/x11/x11_listen_source.h"

#include "core/platform/tap_failure.h"

namespace hopsel {

void X11ListenSource::start() {
    if (isStarted_) return;
    try {
        hook_->startListening([this](const RawEvent& event) { heard(event); });
        failure_.clear();
    } catch (const std::runtime_error& error) {
        failure_ = error.what();
        throw TapFailure(TapFailure::Kind::creationFailed, error.what());
    }
    isStarted_ = true;
    hook_->onLost = [this](bool isOpenAgain) {
        isStarted_ = isOpenAgain;
        flags_ = 0;
        if (onDisabled) onDisabled(isOpenAgain);
    };
}

void X11ListenSource::heard(const RawEvent& event) {
    if (onEvent) onEvent(event);
    if (event.type != RawEventType::flagsChanged) return;
    const bool isPress = (event.flags & ~flags_) != 0;
    flags_ = event.flags;
    if (!isPress || event.synthetic) return;
    guard_.modifierDown(event);
    if (onModifierDown) onModifierDown();
}

void X11ListenSource::stopListening() {
    if (!isStarted_) return;
    isStarted_ = false;
    hook_->onLost = nullptr;
    hook_->stopListening();
}

} // namespace hopsel
