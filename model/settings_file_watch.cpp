#include "model/settings_file_watch.h"

#include <QFile>
#include <QString>
#include <QStringList>
#include <chrono>
#include <exception>
#include <system_error>
#include <utility>

namespace hopsel {

namespace {

using namespace std::chrono_literals;

/// An editor writes in several steps.
constexpr auto collectingTime = 50ms;

/// The folder of the file, or the one above it in which it will be made.
std::filesystem::path nearestFolder(std::filesystem::path file) {
    std::error_code error;
    do file = file.parent_path();
    while (file.has_relative_path() && !std::filesystem::is_directory(file, error));
    return file;
}

} // namespace

SettingsFileWatch::SettingsFileWatch(std::filesystem::path file, std::shared_ptr<const FileStorage> storage,
                                     std::function<void()> onChanged)
    : file_(std::move(file)), storage_(std::move(storage)), onChanged_(std::move(onChanged)), seen_(mark()) {
    timer_.setSingleShot(true);
    timer_.setInterval(collectingTime);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { look(); });
    const auto lookSoon = [this] {
        if (!timer_.isActive()) timer_.start();
    };
    QObject::connect(&watcher_, &QFileSystemWatcher::directoryChanged, &timer_, lookSoon);
    QObject::connect(&watcher_, &QFileSystemWatcher::fileChanged, &timer_, lookSoon);
    look();
}

std::optional<FileMark> SettingsFileWatch::mark() const {
    try {
        return storage_->mark(file_);
    } catch (const std::exception&) {
        return std::nullopt; // a folder that may not be entered: nothing is there for us
    }
}

/// What was watched may have been moved away or replaced under its name, so all of it is taken anew.
void SettingsFileWatch::follow() {
    const auto watched = watcher_.files() + watcher_.directories();
    if (!watched.isEmpty()) watcher_.removePaths(watched);
    std::filesystem::path folder;
    do { // one that is made in between would make the watched one the wrong one
        folder = nearestFolder(file_);
        watcher_.addPath(QFile::decodeName(folder.c_str()));
    } while (nearestFolder(file_) != folder);
    std::error_code error;
    if (std::filesystem::exists(file_, error)) watcher_.addPath(QFile::decodeName(file_.c_str()));
}

// Watched first: what is written after the look is told of.
void SettingsFileWatch::look() {
    follow();
    const auto now = mark();
    if (now == seen_) return;
    seen_ = now;
    onChanged_();
}

} // namespace hopsel
