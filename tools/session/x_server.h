// A virtual X server of a test's own, on a free display, and on request a window manager in it.
//
// While it lives, $DISPLAY of this process names it. Make it before anything that connects, destroy it after.
#pragma once

#include "session/child_process.h"
#include "session/temporary_folder.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace hopsel::session {

class XServer {
  public:
    /// Throws `std::runtime_error`, also when Xvfb is not installed.
    explicit XServer(const std::vector<std::string>& extraArguments = {});
    ~XServer();
    XServer(const XServer&) = delete;
    XServer& operator=(const XServer&) = delete;

    /// For example ":1".
    const std::string& display() const { return display_; }

    /// Kills the server as a crash would, and returns when it is gone, without running the event loop.
    /// $DISPLAY then names no server: another test's may take over the number at once.
    void kill();

    /// Starts openbox and returns when it manages the screen. `rcXml` is its whole configuration; when empty,
    /// one that focuses new windows and binds only Alt+Tab.
    void startWindowManager(const std::string& rcXml = {});

    /// Starts a panel with a tray (trayer), and returns when it takes icons.
    void startPanel();

  private:
    std::unique_ptr<ChildProcess> server_;
    std::string display_;
    std::optional<std::string> previousDisplay_;
    std::unique_ptr<TemporaryFolder> configuration_;
    std::unique_ptr<ChildProcess> windowManager_;
    std::unique_ptr<ChildProcess> panel_;
};

} // namespace hopsel::session
