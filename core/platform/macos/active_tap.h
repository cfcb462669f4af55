// The filtering source: a tap that holds every key press and release until the handler has decided.
//
// Owned by the engine; `log` outlives it. The system waits for the handler, and takes the tap away from one
// that is slow.
#pragma once

#include "core/platform/macos/event_tap.h"
#include "core/platform/shortcut_source.h"
#include "core/platform/tap_failure.h"

namespace hopsel {

class ActiveTap final : public ShortcutSource, private EventTap::Client {
  public:
    explicit ActiveTap(Log& log);

    void start() override;
    void stop() override { tap_.stop(); }
    /// Sees every key, and so need not know.
    void setShortcuts(const ShortcutSet&) override {}

  private:
    bool tapped(CGEventType type, CGEventRef event) override;
    void tapDisabled(bool reenabled) override;
    [[noreturn]] void fail(TapFailure::Kind kind, const std::string& reason);

    TapFailureLog failures_;
    EventTap tap_;
};

} // namespace hopsel
