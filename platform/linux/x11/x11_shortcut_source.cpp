#include "platform/linux/x11/x11_shortcut_source.h"

namespace hopsel {

void X11ShortcutSource::start() {
    if (isStarted_) return;
    try {
        hook_->startFiltering(shortcuts_,
                              [this](const ShortcutInput& input) { return onInput && onInput(input); });
    } catch (const std::runtime_error& error) {
        failures_.failed(error.what());
        throw TapFailure(TapFailure::Kind::creationFailed, error.what());
    }
    isStarted_ = true;
    hook_->onFilterLost = [this] { taken(); };
    failures_.started();
}

void X11ShortcutSource::setShortcuts(const ShortcutSet& shortcuts) {
    shortcuts_ = shortcuts;
    if (!isStarted_) return;
    try {
        hook_->setShortcuts(shortcuts);
    } catch (const std::runtime_error& error) {
        failures_.failed(error.what());
        taken();
    }
}

void X11ShortcutSource::stopFiltering() {
    if (!isStarted_) return;
    isStarted_ = false;
    hook_->onFilterLost = nullptr;
    hook_->stopFiltering();
}

void X11ShortcutSource::taken() {
    stopFiltering();
    if (onDisabled) onDisabled(false);
}

} // namespace hopsel
