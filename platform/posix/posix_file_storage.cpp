#include "platform/posix/posix_file_storage.h"

#include "platform/posix/file_replacement.h"
#include "platform/posix/posix_calls.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace hopsel {

using posix::Descriptor;
using posix::fail;
using posix::retrying;
namespace fs = std::filesystem;

namespace {

std::int64_t nanoseconds(const timespec& time) {
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

// The two families of systems have other names for the times.
template <class Status>
FileMark markOf(const Status& status) {
    FileMark mark{static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino),
                  status.st_size, 0, 0};
    if constexpr (requires { status.st_mtimespec; }) {
        mark.written = nanoseconds(status.st_mtimespec);
        mark.modified = nanoseconds(status.st_ctimespec);
    } else {
        mark.written = nanoseconds(status.st_mtim);
        mark.modified = nanoseconds(status.st_ctim);
    }
    return mark;
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

std::optional<FileMark> PosixFileStorage::mark(const fs::path& file) const {
    struct stat status{};
    if (::stat(file.c_str(), &status) == 0) return markOf(status);
    if (errno == ENOENT || errno == ENOTDIR) return std::nullopt;
    fail(file);
}

std::string PosixFileStorage::read(const fs::path& file) const {
    // Opening a FIFO without O_NONBLOCK would wait for a writer.
    const Descriptor input(
        retrying([&] { return ::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY); }));
    if (!input.isOpen()) fail(file);
    struct stat status{};
    if (::fstat(input.get(), &status) != 0) fail(file);
    posix::requireRegular(status, file);
    if (std::cmp_greater(status.st_size, maxFileSize)) fail(file, EFBIG);

    std::string text;
    text.reserve(static_cast<std::size_t>(status.st_size) + 1); // growing step by step would cost twice that
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
    file_replacement::write(file, bytes, [](const fs::path&) { return true; });
}

bool PosixFileStorage::replace(const fs::path& file, const std::optional<FileMark>& expected,
                               std::string_view bytes) {
    return file_replacement::write(file, bytes,
                                   [&](const fs::path& target) { return mark(target) == expected; });
}

void PosixFileStorage::clearLeftovers(const fs::path& file) { file_replacement::clearLeftovers(file); }

std::vector<fs::path> PosixFileStorage::startingWith(const fs::path& beginning) const {
    std::vector<fs::path> found;
    std::error_code ignored;
    const std::string name = beginning.filename().string();
    for (fs::directory_iterator entry(beginning.parent_path(), ignored), end; !ignored && entry != end;
         entry.increment(ignored)) {
        if (entry->path().filename().string().starts_with(name)) found.push_back(entry->path());
    }
    return found;
}

void PosixFileStorage::copy(const fs::path& from, const fs::path& to) {
    const std::string text = read(from);
    const Descriptor output(
        retrying([&] { return ::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600); }));
    if (!output.isOpen()) fail(to);
    posix::FileInProgress inProgress(to);
    posix::writeAll(output.get(), text, to);
    posix::flush(output.get(), to);
    inProgress.keep();
}

} // namespace hopsel
