// The enabled keyboard input sources of the Text Input Sources service.
//
// Owned by start-up, shared with the service and the directory. Keeps no list: every question is put to the
// system. Its notifications come from all programs, this one included. The system demands the main thread.
#pragma once

#include "core/platform/input_source_service.h"
#include "platform/macos/system_events/coalesced_call.h"
#include "platform/macos/system_events/distributed_notification.h"

namespace hopsel {

class MacInputSourceCatalog final : public InputSourceCatalog {
  public:
    MacInputSourceCatalog();

    std::vector<InputSourceInfo> enabledKeyboardSources() override;
    std::optional<std::string> currentID() override;
    SelectResult select(const std::string& id) override;

  private:
    CoalescedCall tellSources_;
    CoalescedCall tellSelected_;
    DistributedNotification sourcesChanged_;
    DistributedNotification selectedChanged_;
};

} // namespace hopsel
