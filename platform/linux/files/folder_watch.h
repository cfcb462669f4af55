// Tells that something has changed where a file lies, or will lie once it is made.
//
// A member of whoever waits for the file; needs the event loop. While folders are missing the nearest one
// above is watched. Nothing is opened or started for it.
#pragma once

#include <QFileSystemWatcher>
#include <filesystem>
#include <functional>

namespace hopsel {

class FolderWatch {
  public:
    /// `onChange` is called from the event loop, also for other files of the folder. It must not destroy
    /// this.
    FolderWatch(std::filesystem::path file, std::function<void()> onChange);
    FolderWatch(const FolderWatch&) = delete;
    FolderWatch& operator=(const FolderWatch&) = delete;

  private:
    void follow();

    std::filesystem::path file_;
    QFileSystemWatcher watcher_;
};

} // namespace hopsel
