// The filtering source: a tap that holds every key press and release until the handler has decided.
//
// Owned by the engine; `log` outlives it. The system waits for the handler, and takes the tap away from one
// that is slow.
#pragma once

#include "core/platform/shortcut_source.h"
#include "core/platform/tap_failure.h"
#include "platform/macos/keys/event_tap.h"

#include <optional>

namespace hopsel {

class ActiveTap final : public ShortcutSource, private EventTap::Client {
  public:
    explicit ActiveTap(Log& log);

    void start() override;
    void stop() override { tap_.stop(); }
    /// Sees every key, and so need not know.
    void setShortcuts(const ShortcutSet&) override {}
    /// To be called every now and then: a filter that has lost the permission must not stay in the stream.
    void check();

  private:
    /// Not without the permission, and not twice in a short time: a filter that is put back while it may not
    /// filter, or cannot keep up, holds up the keyboard of the whole session.
    bool mayReenable() override;
    bool tapped(CGEventType type, CGEventRef event) override;
    void tapDisabled(bool reenabled) override;
    [[noreturn]] void fail(TapFailure::Kind kind, const std::string& reason);

    TapFailureLog failures_;
    std::optional<double> takenAwayAt_; ///< seconds of uptime
    EventTap tap_;
};

} // namespace hopsel
