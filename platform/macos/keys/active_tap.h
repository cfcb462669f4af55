// The filtering source: a tap that holds every key press and release until the handler has decided.
//
// Owned by the engine; `log` outlives it. The system waits for the handler, and takes the tap away from one
// that is slow, or that may not filter any more. While a filter stands in the stream that cannot do its work,
// the keyboard of the whole session stands still: so one that was taken away never simply returns.
#pragma once

#include "core/platform/shortcut_source.h"
#include "core/platform/tap_failure.h"
#include "platform/macos/keys/event_tap.h"
#include "platform/macos/keys/mac_permissions.h"

#include <memory>
#include <vector>

namespace hopsel {

class ActiveTap final : public ShortcutSource, private EventTap::Client {
  public:
    ActiveTap(Log& log, std::shared_ptr<const MacPermissions> permissions);

    void start() override;
    void stop() override { tap_.stop(); }
    /// Sees every key, and so need not know.
    void setShortcuts(const ShortcutSet&) override {}
    /// To be called every now and then: a filter that has lost the permission must not stay in the stream.
    void check();

  private:
    bool tapped(CGEventType type, CGEventRef event) override;
    /// Makes the tap anew, if it may return: the system refuses what it does not permit any more, while a tap
    /// that is enabled again would only time out again.
    void takenAway() override;
    bool mayReturn();
    bool hasLostTrust() const;
    /// It was taken away so often that it stays out for a while.
    bool isResting() const;
    [[noreturn]] void fail(TapFailure::Kind kind, const std::string& reason);

    TapFailureLog failures_;
    std::shared_ptr<const MacPermissions> permissions_;
    bool wasTrusted_ = false;         ///< when it was started; if not, a "no" later says nothing new
    std::vector<double> takenAwayAt_; ///< the latest times, seconds of uptime
    EventTap tap_;
};

} // namespace hopsel
