// The keys that reach our own windows, seen before the toolkit and the input methods see them.
//
// Made by start-up, for all windows. While it is started no key-down gets any further. It sees no other
// program's keys.
#pragma once

#include "core/platform/local_key_monitoring.h"

#include <memory>

namespace hopsel {

class LocalKeyMonitor final : public LocalKeyMonitoring {
  public:
    LocalKeyMonitor();
    ~LocalKeyMonitor() override;

    void start(std::function<void(const LocalKeyDown&)> onKeyDown) override;
    void stop() override;

  private:
    struct Registration;
    std::unique_ptr<Registration> registration_; ///< absent while it is stopped
};

} // namespace hopsel
