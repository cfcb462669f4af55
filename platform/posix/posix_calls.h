// What every user of the file system calls needs: descriptors that close, calls that signals do not cut
// short, failures with their path. Values and functions without state.
#pragma once

#include <cerrno>
#include <filesystem>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace hopsel::posix {

[[noreturn]] inline void fail(const std::filesystem::path& file, int error = errno) {
    throw std::system_error(error, std::generic_category(), file.string());
}

template <typename Call>
auto retrying(Call call) {
    auto result = call();
    while (result == -1 && errno == EINTR) result = call();
    return result;
}

class Descriptor {
  public:
    explicit Descriptor(int fd) : fd_(fd) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (fd_ >= 0) ::close(fd_);
    }
    int get() const { return fd_; }
    bool isOpen() const { return fd_ >= 0; }

  private:
    int fd_;
};

/// A file that goes away again unless it is kept.
class FileInProgress {
  public:
    explicit FileInProgress(std::filesystem::path path) : path_(std::move(path)) {}
    FileInProgress(const FileInProgress&) = delete;
    FileInProgress& operator=(const FileInProgress&) = delete;
    ~FileInProgress() {
        if (!isKept_) ::unlink(path_.c_str());
    }
    void keep() { isKept_ = true; }

  private:
    std::filesystem::path path_;
    bool isKept_ = false;
};

/// Throws unless it is a plain file.
inline void requireRegular(const struct stat& status, const std::filesystem::path& file) {
    if (S_ISDIR(status.st_mode)) fail(file, EISDIR);
    if (!S_ISREG(status.st_mode)) fail(file, EINVAL);
}

inline void writeAll(int fd, std::string_view bytes, const std::filesystem::path& file) {
    while (!bytes.empty()) {
        const ssize_t written = retrying([&] { return ::write(fd, bytes.data(), bytes.size()); });
        if (written < 0) fail(file);
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

/// Some file systems (FUSE, network) cannot flush a file and say so; there is nothing better to be had there.
inline void flush(int fd, const std::filesystem::path& file) {
    if (retrying([&] { return ::fsync(fd); }) != 0 && errno != EINVAL && errno != ENOSYS &&
        errno != ENOTSUP) {
        fail(file);
    }
}

} // namespace hopsel::posix
