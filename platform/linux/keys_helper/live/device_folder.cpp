#include "platform/linux/keys_helper/live/device_folder.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <sys/inotify.h>
#include <system_error>
#include <utility>

namespace hopsel {

namespace {

constexpr const char* folder = "/dev/input";

} // namespace

DeviceFolder::DeviceFolder(EventLoop& loop, std::function<void()> onChange)
    : notices_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    // A device is made first and given to its group after that. Without the folder there is no device ever.
    if (!notices_.isOpen() || inotify_add_watch(notices_.get(), folder, IN_CREATE | IN_ATTRIB) < 0) return;
    watch_ = loop.whenReadable(notices_.get(), [this, onChange = std::move(onChange)] {
        std::array<char, 4096> notices{};
        while (read(notices_.get(), notices.data(), notices.size()) > 0) {
        }
        onChange();
    });
}

std::vector<std::string> DeviceFolder::devices() {
    std::vector<std::string> paths;
    std::error_code failure;
    for (const auto& entry : std::filesystem::directory_iterator(folder, failure))
        if (entry.path().filename().string().starts_with("event")) paths.push_back(entry.path().string());
    std::sort(paths.begin(), paths.end());
    return paths;
}

} // namespace hopsel
