#include "ui/settings/rules/shortcut_capture_monitor.h"

#include <utility>

namespace hopsel {

namespace {

constexpr std::uint16_t escapeKeyCode = 53;

} // namespace

ShortcutCaptureMonitor::ShortcutCaptureMonitor(std::shared_ptr<LocalKeyMonitoring> keys)
    : keys_(keys ? std::move(keys) : std::make_shared<NoLocalKeyMonitoring>()) {}

void ShortcutCaptureMonitor::start(Handler onCapture, std::function<void(UnusableKey)> onUnusable) {
    stop();
    isStarted_ = true;
    keys_->onUnusable = std::move(onUnusable);
    keys_->start([onCapture = std::move(onCapture)](const LocalKeyDown& key) {
        if (key.isRepeat) return;
        const ModifierSet held = heldModifiers(key.flags);
        if (key.keyCode == escapeKeyCode && held.empty())
            onCapture(std::nullopt);
        else
            onCapture(ShortcutKey{key.keyCode, held});
    });
}

void ShortcutCaptureMonitor::stop() {
    // The platform's monitor is shared: what another started is not ours to stop.
    if (!std::exchange(isStarted_, false)) return;
    keys_->onUnusable = nullptr;
    keys_->stop();
}

} // namespace hopsel
