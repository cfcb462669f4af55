#include "platform/linux/files/file_version.h"

#include <sys/stat.h>

namespace hopsel {

std::optional<FileVersion> FileVersion::of(const std::filesystem::path& path) {
    struct stat status{};
    if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    return FileVersion{status.st_ino, status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

} // namespace hopsel
