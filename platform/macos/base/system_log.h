// The unified log, under the application's identifier. Made by start-up, outlives everyone who writes to it.
#pragma once

#include "core/platform/log.h"

namespace hopsel {

class SystemLog final : public Log {
  public:
    void write(Level level, std::string_view category, std::string_view message) override;
};

} // namespace hopsel
