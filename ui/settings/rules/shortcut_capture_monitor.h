// Turns the next key that is pressed in our windows into a key combination.
//
// Owned by the capture of a trigger. It ends with its owner, which leaves no monitor of the platform running.
#pragma once

#include "core/keys/shortcut_key.h"
#include "core/platform/local_key_monitoring.h"

#include <functional>
#include <memory>
#include <optional>

namespace hopsel {

class ShortcutCaptureMonitor {
  public:
    /// Absent when Escape was pressed on its own.
    using Handler = std::function<void(std::optional<ShortcutKey>)>;

    /// Without `keys` no combination is ever seen.
    explicit ShortcutCaptureMonitor(std::shared_ptr<LocalKeyMonitoring> keys);
    ~ShortcutCaptureMonitor() { stop(); }
    ShortcutCaptureMonitor(const ShortcutCaptureMonitor&) = delete;
    ShortcutCaptureMonitor& operator=(const ShortcutCaptureMonitor&) = delete;

    /// Called for every key-down until `stop`, which the handler may call.
    void start(Handler onCapture, std::function<void(UnusableKey)> onUnusable = {});
    void stop();
    bool missesGrabbedKeys() const { return keys_->missesGrabbedKeys(); }

  private:
    std::shared_ptr<LocalKeyMonitoring> keys_;
    bool isStarted_ = false;
};

} // namespace hopsel
