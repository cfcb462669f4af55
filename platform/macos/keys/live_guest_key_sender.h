// Posts the guest key into the system's event stream, marked as ours.
//
// Owned by the engine. Between the events the main loop runs: our own filter stands in their way, and would
// otherwise hold them all until the last one is posted and pass them on without the pauses.
#pragma once

#include "core/platform/guest_key.h"

namespace hopsel {

class LiveGuestKeySender final : public GuestKeySending {
  public:
    bool send(const ShortcutKey& key) override;
};

} // namespace hopsel
