// The keys with which Fcitx5 switches input methods, from its configuration file.
//
// Owned by whoever asks; reads the file when it is asked and the file is another than last time. What is not
// in the file is as Fcitx5 ships it.
#pragma once

#include "core/keys/shortcut_key.h"
#include "platform/linux/files/file_version.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace hopsel {

/// From the text of the file; an empty text gives the stock keys.
std::vector<ShortcutKey> fcitxSwitchKeys(std::string_view config);

class FcitxSwitchKeys {
  public:
    explicit FcitxSwitchKeys(std::filesystem::path file) : file_(std::move(file)) {}

    /// A file that cannot be read, or is too large to be one of Fcitx5's, counts as an empty one.
    const std::vector<ShortcutKey>& read();

  private:
    std::filesystem::path file_;
    bool isRead_ = false;
    std::optional<FileVersion> readVersion_; ///< absent: there was no file
    std::vector<ShortcutKey> keys_;
};

} // namespace hopsel
