// The program itself, started on a settings file of its own, with private XDG folders and $DISPLAY as it is.
#pragma once

#include "session/child_process.h"
#include "session/temporary_folder.h"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace hopsel::session {

/// Right Command tapped, and left Shift+Space: each toggles between the layouts us and ru.
extern const std::string_view twoRules;

class HopselProgram {
  public:
    /// Does not wait until it works: see `XLayouts` for that. What it says on standard error is captured.
    HopselProgram(const std::filesystem::path& executable, std::string_view settings,
                  const std::vector<std::string>& arguments = {});

    ChildProcess& process() { return *process_; }
    const std::filesystem::path& settingsFile() const { return settingsFile_; }
    /// Starts another copy in the same session. With arguments, what it prints is captured, too.
    std::unique_ptr<ChildProcess> startAnother(const std::vector<std::string>& arguments = {}) const;

  private:
    std::filesystem::path executable_;
    TemporaryFolder folder_;
    std::filesystem::path settingsFile_;
    std::unique_ptr<ChildProcess> process_;
};

} // namespace hopsel::session
