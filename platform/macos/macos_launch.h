// What macOS asks of the process while it starts.
#pragma once

#include "platform/interface/launch.h"

namespace hopsel {

class MacosLaunch final : public Launch {
  public:
    MacosLaunch();
    void applicationMade() override;
};

} // namespace hopsel
