#include "platform/linux/files/small_files.h"

#include "platform/posix/posix_file_storage.h"

#include <system_error>

namespace hopsel {

namespace fs = std::filesystem;

std::optional<std::string> readSmallFile(const fs::path& file) {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (status.type() != fs::file_type::regular) return std::nullopt;
    const auto size = fs::file_size(file, error);
    if (error || size > maxSmallFile) return std::nullopt;
    try {
        return PosixFileStorage({}).read(file);
    } catch (const std::system_error&) {
        return std::nullopt;
    }
}

fs::path copyAside(const fs::path& file) {
    constexpr int mostCopies = 100;
    for (int number = 1;; ++number) {
        fs::path copy = file;
        copy += number == 1 ? ".damaged" : ".damaged-" + std::to_string(number);
        try {
            PosixFileStorage({}).copy(file, copy);
            return copy;
        } catch (const std::system_error& error) {
            if (error.code() != std::errc::file_exists || number == mostCopies) throw;
        }
    }
}

} // namespace hopsel
