#include "platform/linux/files/folder_watch.h"

#include <QString>
#include <QStringList>
#include <system_error>
#include <utility>

namespace hopsel {

namespace {

std::filesystem::path nearestFolder(std::filesystem::path folder) {
    std::error_code ignored;
    while (!std::filesystem::is_directory(folder, ignored) && folder != folder.parent_path())
        folder = folder.parent_path();
    return folder;
}

} // namespace

FolderWatch::FolderWatch(std::filesystem::path file, std::function<void()> onChange)
    : file_(std::move(file)) {
    QObject::connect(&watcher_, &QFileSystemWatcher::directoryChanged, &watcher_,
                     [this, tell = std::move(onChange)] {
                         follow();
                         tell();
                     });
    follow();
}

void FolderWatch::follow() {
    // Again, if a folder has come in the moment before its parent was watched.
    for (std::filesystem::path folder; folder != nearestFolder(file_.parent_path());) {
        folder = nearestFolder(file_.parent_path());
        const QStringList wanted{QString::fromStdString(folder.string())};
        if (watcher_.directories() == wanted) return;
        if (!watcher_.directories().isEmpty()) watcher_.removePaths(watcher_.directories());
        watcher_.addPaths(wanted);
    }
}

} // namespace hopsel
