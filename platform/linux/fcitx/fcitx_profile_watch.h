// Notices that Fcitx5 has written the file with the groups of input methods: no signal of it tells so.
//
// Owned by the input sources. The file and its folders may come, go and come back; Fcitx5 replaces the file
// as a whole, so it is the folder that is watched.
#pragma once

#include "platform/linux/base/coalescing_timer.h"
#include "platform/linux/files/file_version.h"
#include "platform/linux/files/folder_watch.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>

namespace hopsel {

class FcitxProfileWatch {
  public:
    /// `onChanged` is called from the event loop, once for a burst.
    FcitxProfileWatch(std::filesystem::path profile, std::function<void()> onChanged);

    /// The file of this user.
    static std::filesystem::path defaultProfile();

  private:
    void look();

    std::filesystem::path profile_;
    std::function<void()> onChanged_;
    std::optional<FileVersion> version_;
    CoalescingTimer timer_;
    FolderWatch folder_;
};

} // namespace hopsel
