// Pictures of a private X server's screen, for people to look at.
#pragma once

#include "session/x_display.h"

#include <filesystem>

namespace hopsel::session {

class XScreenshots {
  public:
    /// Writes the screen as a PNG once it has stopped changing: when two looks in a row are the same, or
    /// after two seconds. Throws `std::runtime_error` when it cannot be written.
    void save(const std::filesystem::path& path);

  private:
    XDisplay display_;
};

} // namespace hopsel::session
