#include "platform/linux/x11/x11_shortcut_source.h"

namespace hopsel {

namespace {

using namespace std::chrono_literals;

/// The server does not tell when a grab ends.
constexpr auto retryInterval = 1000ms;

} // namespace

X11ShortcutSource::X11ShortcutSource(std::shared_ptr<X11KeyHook> hook, Log& log)
    : hook_(std::move(hook)), failures_(log) {
    retryTimer_.setInterval(retryInterval);
    QObject::connect(&retryTimer_, &QTimer::timeout, &retryTimer_, [this] { hook_->retryTaken(); });
}

void X11ShortcutSource::start() {
    if (isStarted_) return;
    try {
        hook_->startFiltering(shortcuts_,
                              [this](const ShortcutInput& input) { return onInput && onInput(input); });
    } catch (const std::runtime_error& error) {
        failures_.failed(error.what());
        tellTaken();
        throw TapFailure(TapFailure::Kind::creationFailed, error.what());
    }
    isStarted_ = true;
    hook_->onFilterLost = [this] { lost(); };
    hook_->onTakenChanged = [this] { tellTaken(); };
    failures_.started();
    tellTaken();
}

void X11ShortcutSource::setShortcuts(const ShortcutSet& shortcuts) {
    shortcuts_ = shortcuts;
    if (!isStarted_) return;
    try {
        hook_->setShortcuts(shortcuts);
    } catch (const std::runtime_error& error) {
        failures_.failed(error.what());
        return lost();
    }
    tellTaken();
}

void X11ShortcutSource::stopFiltering() {
    if (!isStarted_) return;
    isStarted_ = false;
    retryTimer_.stop();
    hook_->onFilterLost = nullptr;
    hook_->onTakenChanged = nullptr;
    hook_->stopFiltering();
}

void X11ShortcutSource::lost() {
    stopFiltering();
    tellTaken();
    if (onDisabled) onDisabled(false);
}

void X11ShortcutSource::tellTaken() {
    // While nothing is filtered the engine starts us again and again.
    if (isStarted_ && !hook_->takenShortcuts().empty())
        retryTimer_.start();
    else
        retryTimer_.stop();
    if (onUnavailableChanged) onUnavailableChanged();
}

} // namespace hopsel
