#include "platform/posix/posix_file_storage.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <pwd.h>
#include <random>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace hopsel {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const fs::path& file, int error = errno) {
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
    explicit FileInProgress(fs::path path) : path_(std::move(path)) {}
    FileInProgress(const FileInProgress&) = delete;
    FileInProgress& operator=(const FileInProgress&) = delete;
    ~FileInProgress() {
        if (!isKept_) ::unlink(path_.c_str());
    }
    void keep() { isKept_ = true; }

  private:
    fs::path path_;
    bool isKept_ = false;
};

void requireRegular(const struct stat& status, const fs::path& file) {
    if (S_ISDIR(status.st_mode)) fail(file, EISDIR);
    if (!S_ISREG(status.st_mode)) fail(file, EINVAL);
}

void writeAll(int fd, std::string_view bytes, const fs::path& file) {
    while (!bytes.empty()) {
        const ssize_t written = retrying([&] { return ::write(fd, bytes.data(), bytes.size()); });
        if (written < 0) fail(file);
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

/// Some file systems (FUSE, network) cannot flush a file and say so; there is nothing better to be had there.
void flush(int fd, const fs::path& file) {
    if (retrying([&] { return ::fsync(fd); }) != 0 && errno != EINVAL && errno != ENOSYS &&
        errno != ENOTSUP) {
        fail(file);
    }
}

/// The file that a chain of links names, whether it exists or not. Renaming onto a link would replace the
/// link, and with it the arrangement of a user who keeps the settings elsewhere.
fs::path resolveLinks(fs::path file) {
    constexpr int mostLinks = 40; // as the kernel
    for (int links = 0; links <= mostLinks; ++links) {
        std::error_code error;
        const fs::path target = fs::read_symlink(file, error);
        const bool isNoLink =
            error == std::errc::invalid_argument || error == std::errc::no_such_file_or_directory;
        if (isNoLink) return file;
        if (error) throw std::system_error(error, file.string());
        file = file.parent_path() / target; // an absolute target replaces the whole path
    }
    fail(file, ELOOP);
}

fs::path folderOf(const fs::path& file) {
    return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

fs::path temporaryName(const fs::path& folder) {
    static constexpr std::string_view alphabet = "abcdefghijklmnopqrstuvwxyz0123456789";
    std::random_device random;
    std::string name = ".hopsel-";
    for (int i = 0; i < 12; ++i) name += alphabet[random() % alphabet.size()];
    return folder / name;
}

} // namespace

fs::path PosixFileStorage::xdgDataHome() {
    if (const char* data = std::getenv("XDG_DATA_HOME"); data != nullptr && fs::path(data).is_absolute())
        return data;
    fs::path home;
    if (const char* variable = std::getenv("HOME"); variable != nullptr) home = variable;
    if (home.empty()) {
        const passwd* user = ::getpwuid(::getuid());
        home = user != nullptr ? user->pw_dir : "/";
    }
    return home / ".local" / "share";
}

bool PosixFileStorage::exists(const fs::path& file) const {
    struct stat status{};
    if (::stat(file.c_str(), &status) == 0) return true;
    // Any other error means that we cannot know. Reading will then fail and say why, where "no" would pass
    // for a first run and later overwrite the file.
    return errno != ENOENT && errno != ENOTDIR;
}

std::string PosixFileStorage::read(const fs::path& file) const {
    // Opening a FIFO without O_NONBLOCK would wait for a writer.
    const Descriptor input(
        retrying([&] { return ::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY); }));
    if (!input.isOpen()) fail(file);
    struct stat status{};
    if (::fstat(input.get(), &status) != 0) fail(file);
    requireRegular(status, file);
    if (std::cmp_greater(status.st_size, maxFileSize)) fail(file, EFBIG);

    std::string text;
    std::array<char, 16384> chunk; // NOLINT(*-member-init): read() fills what is used
    for (;;) {
        const ssize_t count = retrying([&] { return ::read(input.get(), chunk.data(), chunk.size()); });
        if (count < 0) fail(file);
        if (count == 0) return text;
        text.append(chunk.data(), static_cast<std::size_t>(count));
        if (text.size() > maxFileSize) fail(file, EFBIG); // it grows while it is read
    }
}

// What is made here is the user's alone; what is there already stays as it is.
void PosixFileStorage::createDirectories(const fs::path& folder) {
    fs::path made;
    for (const fs::path& name : folder) {
        made /= name;
        std::error_code error;
        if (fs::is_directory(made, error) || ::mkdir(made.c_str(), 0700) == 0) continue;
        const int reason = errno;
        if (!fs::is_directory(made, error)) fail(folder, reason); // the one that was asked for
    }
}

void PosixFileStorage::writeAtomically(const fs::path& file, std::string_view bytes) {
    const fs::path target = resolveLinks(file);
    struct stat old{};
    const bool isReplaced = ::stat(target.c_str(), &old) == 0;
    if (!isReplaced && errno != ENOENT) fail(target);
    if (isReplaced) requireRegular(old, target); // rename would replace a FIFO or a device without a word

    // In the same folder, because only within one file system is renaming one step.
    const fs::path folder = folderOf(target);
    const fs::path temporary = temporaryName(folder);
    const Descriptor output(
        retrying([&] { return ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600); }));
    if (!output.isOpen()) fail(target);
    FileInProgress inProgress(temporary);
    // A file system without modes (a memory stick) refuses this, and has nothing to keep either.
    if (isReplaced && ::fchmod(output.get(), old.st_mode & 0777U) != 0 && errno != EPERM && errno != ENOTSUP)
        fail(target);
    writeAll(output.get(), bytes, target);
    flush(output.get(), target); // before the new name, or a crash could leave the name on an empty file
    if (::rename(temporary.c_str(), target.c_str()) != 0) fail(target);
    inProgress.keep();

    // The new contents stand from here on, so a folder that cannot be opened or flushed is no failed write.
    const Descriptor directory(
        retrying([&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (directory.isOpen()) retrying([&] { return ::fsync(directory.get()); });
}

void PosixFileStorage::copy(const fs::path& from, const fs::path& to) {
    const std::string text = read(from);
    const Descriptor output(
        retrying([&] { return ::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600); }));
    if (!output.isOpen()) fail(to);
    FileInProgress inProgress(to);
    writeAll(output.get(), text, to);
    flush(output.get(), to);
    inProgress.keep();
}

} // namespace hopsel
