// The seam through which a window of ours sees the keys that are pressed in it, before anything else does.
//
// Owned by start-up; used by whoever asks the user to press a key. While it runs, no key reaches a control, a
// shortcut of the window or an input method.
#pragma once

#include <cstdint>
#include <functional>

namespace hopsel {

struct LocalKeyDown {
    std::uint16_t keyCode = 0; ///< virtual key code
    std::uint64_t flags = 0;   ///< flag word with sides (see core/keys/modifier_key.h)
    bool isRepeat = false;
};

/// Keys that cannot be triggers, as far as a window can see it.
enum class UnusableKey : std::uint8_t {
    capsLock,
    modifiersTogether, ///< several modifiers went down and came up without any other key
};

class LocalKeyMonitoring {
  public:
    LocalKeyMonitoring() = default;
    LocalKeyMonitoring(const LocalKeyMonitoring&) = delete;
    LocalKeyMonitoring& operator=(const LocalKeyMonitoring&) = delete;
    virtual ~LocalKeyMonitoring() = default;

    /// Key-downs of ordinary keys only; modifier keys come as flags. Starting again replaces the callback.
    virtual void start(std::function<void(const LocalKeyDown&)> onKeyDown) = 0;
    /// May be called inside the callback. No callback afterwards.
    virtual void stop() = 0;
    /// Combinations that another program has taken for itself do not arrive.
    virtual bool missesGrabbedKeys() const { return false; }

    /// Told while it runs, where the platform can tell. It may stop the monitor.
    std::function<void(UnusableKey)> onUnusable;
};

/// For previews, and for platforms that cannot.
class NoLocalKeyMonitoring final : public LocalKeyMonitoring {
  public:
    void start(std::function<void(const LocalKeyDown&)> /*onKeyDown*/) override {}
    void stop() override {}
};

} // namespace hopsel
