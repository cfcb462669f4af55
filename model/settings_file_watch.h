// Tells when the settings file may have become another, whoever did it: written in place, replaced, taken
// away.
//
// Owned by start-up. Watches the folder in which the file lies or will lie, and the file, which may be a link
// to elsewhere; nothing is polled. Many changes are told as one, soon after the first.
#pragma once

#include "core/platform/file_storage.h"

#include <QFileSystemWatcher>
#include <QTimer>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

namespace hopsel {

class SettingsFileWatch {
  public:
    SettingsFileWatch(std::filesystem::path file, std::shared_ptr<const FileStorage> storage,
                      std::function<void()> onChanged);

  private:
    std::optional<FileMark> mark() const;
    void follow();
    void look();

    std::filesystem::path file_;
    std::shared_ptr<const FileStorage> storage_;
    std::function<void()> onChanged_;
    std::optional<FileMark> seen_;
    QFileSystemWatcher watcher_;
    QTimer timer_;
};

} // namespace hopsel
