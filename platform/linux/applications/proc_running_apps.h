// The programs that run now: the names of their executables, and the desktop files that start them.
//
// Owned by the application model. Stateless; each question reads /proc and the desktop files anew.
#pragma once

#include "core/platform/running_apps.h"
#include "platform/linux/files/xdg_folders.h"

#include <filesystem>
#include <vector>

namespace hopsel {

class ProcRunningApps final : public RunningAppsProviding {
  public:
    explicit ProcRunningApps(std::filesystem::path processes = "/proc",
                             std::vector<std::filesystem::path> dataFolders = xdgDataFolders());

    /// For each process in the order of their numbers: its executable, the name it goes by if that differs,
    /// and the identifiers of its desktop files. Each once, at most `maxNames`, none longer than `maxLength`.
    std::vector<std::string> runningBundleIDs() override;

    static constexpr std::size_t maxNames = 4096;
    static constexpr std::size_t maxLength = 255;

  private:
    std::filesystem::path processes_;
    std::vector<std::filesystem::path> dataFolders_;
};

} // namespace hopsel
