// What tells whether a file is still the one that was read. A value.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <sys/types.h>

namespace hopsel {

struct FileVersion {
    ino_t file = 0;
    off_t size = 0; ///< in bytes
    std::int64_t seconds = 0;
    std::int64_t nanoseconds = 0;

    /// Of the regular file at the end of the path; absent if there is none.
    static std::optional<FileVersion> of(const std::filesystem::path& path);

    friend bool operator==(const FileVersion&, const FileVersion&) = default;
};

} // namespace hopsel
