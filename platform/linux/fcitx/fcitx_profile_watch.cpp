#include "platform/linux/fcitx/fcitx_profile_watch.h"

#include <QStandardPaths>
#include <system_error>
#include <utility>

namespace hopsel {

namespace {

using namespace std::chrono_literals;

// Fcitx5 has the new list before it writes the file.
constexpr auto quiet = 30ms, atMost = 300ms;

std::filesystem::path nearestFolder(std::filesystem::path folder) {
    std::error_code ignored;
    while (!std::filesystem::is_directory(folder, ignored) && folder != folder.parent_path())
        folder = folder.parent_path();
    return folder;
}

} // namespace

std::filesystem::path FcitxProfileWatch::defaultProfile() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return std::filesystem::path(folder.toStdString()) / "fcitx5" / "profile";
}

FcitxProfileWatch::FcitxProfileWatch(std::filesystem::path profile, std::function<void()> onChanged)
    : profile_(std::move(profile)),
      onChanged_(std::move(onChanged)),
      version_(FileVersion::of(profile_)),
      timer_(quiet, atMost, [this] { look(); }) {
    QObject::connect(&watcher_, &QFileSystemWatcher::directoryChanged, &watcher_, [this] {
        follow();
        timer_.noteChange();
    });
    follow();
}

void FcitxProfileWatch::follow() {
    // Again, if a folder has come in the moment before its parent was watched.
    for (std::filesystem::path folder; folder != nearestFolder(profile_.parent_path());) {
        folder = nearestFolder(profile_.parent_path());
        const QStringList wanted{QString::fromStdString(folder.string())};
        if (watcher_.directories() == wanted) return;
        if (!watcher_.directories().isEmpty()) watcher_.removePaths(watcher_.directories());
        watcher_.addPaths(wanted);
    }
}

void FcitxProfileWatch::look() {
    if (const auto found = FileVersion::of(profile_); found != version_) {
        version_ = found;
        onChanged_();
    }
}

} // namespace hopsel
