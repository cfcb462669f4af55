// A desktop with accessibility: a session bus and, on request, the launcher of the accessibility bus, whose
// registry starts when it is first needed.
//
// Needs a display: make it after the X server. HOME and the user's settings are not touched.
#pragma once

#include "session/child_process.h"
#include "session/private_bus.h"
#include "session/temporary_folder.h"

#include <memory>
#include <string>

namespace hopsel::test {

class AccessibleDesktop {
  public:
    /// Returns when the launcher is on the session bus.
    void start(bool isEnabled = true);
    void setEnabled(bool isEnabled);
    /// Ends the launcher, and with it its bus, as a crash would.
    void killBus();

    enum class Toolkit { gtk, qt };
    /// A program with the two fields.
    std::unique_ptr<session::ChildProcess> startProgram(Toolkit toolkit) const;

    session::PrivateBus sessionBus;

  private:
    session::TemporaryFolder folder_;
    std::unique_ptr<session::ChildProcess> launcher_;
};

} // namespace hopsel::test
