#include "platform/posix/file_replacement.h"

#include "platform/posix/posix_calls.h"

#include <fcntl.h>
#include <random>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <vector>

namespace hopsel::file_replacement {

using posix::Descriptor;
using posix::fail;
using posix::retrying;
namespace fs = std::filesystem;

namespace {

constexpr std::string_view prefix = ".hopsel-";
constexpr std::string_view alphabet = "abcdefghijklmnopqrstuvwxyz0123456789";
constexpr std::size_t randomLetters = 12;

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
    std::random_device random;
    std::string name(prefix);
    for (std::size_t i = 0; i < randomLetters; ++i) name += alphabet[random() % alphabet.size()];
    return folder / name;
}

bool isTemporaryName(std::string_view name) {
    if (!name.starts_with(prefix) || name.size() != prefix.size() + randomLetters) return false;
    name.remove_prefix(prefix.size());
    return name.find_first_not_of(alphabet) == std::string_view::npos;
}

/// Left by a writer that is gone, whose lock went with it.
bool isLeftOver(const fs::path& path) {
    const Descriptor file(
        retrying([&] { return ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC); }));
    struct stat status{};
    return file.isOpen() && ::fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode) &&
           ::flock(file.get(), LOCK_EX | LOCK_NB) == 0;
}

} // namespace

bool write(const fs::path& file, std::string_view bytes,
           const std::function<bool(const fs::path& target)>& mayReplace) {
    const fs::path target = resolveLinks(file);
    struct stat old{};
    const bool isReplaced = ::stat(target.c_str(), &old) == 0;
    if (!isReplaced && errno != ENOENT) fail(target);
    if (isReplaced)
        posix::requireRegular(old, target); // rename would replace a FIFO or a device without a word

    // In the same folder, because only within one file system is renaming one step.
    const fs::path folder = folderOf(target);
    const fs::path temporary = temporaryName(folder);
    const Descriptor output(
        retrying([&] { return ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600); }));
    if (!output.isOpen()) fail(target);
    ::flock(output.get(), LOCK_EX | LOCK_NB); // where there are no locks, what is left over stays
    posix::FileInProgress inProgress(temporary);
    // A file system without modes (a memory stick) refuses this, and has nothing to keep either.
    if (isReplaced && ::fchmod(output.get(), old.st_mode & 0777U) != 0 && errno != EPERM && errno != ENOTSUP)
        fail(target);
    posix::writeAll(output.get(), bytes, target);
    // Before the new name, or a crash could leave the name on an empty file.
    posix::flush(output.get(), target);
    if (!mayReplace(target)) return false;
    if (::rename(temporary.c_str(), target.c_str()) != 0) fail(target);
    inProgress.keep();

    // The new contents stand from here on, so a folder that cannot be opened or flushed is no failed write.
    const Descriptor directory(
        retrying([&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (directory.isOpen()) retrying([&] { return ::fsync(directory.get()); });
    return true;
}

void clearLeftovers(const fs::path& file) {
    std::error_code ignored;
    fs::path folder;
    try {
        folder = folderOf(resolveLinks(file));
    } catch (const std::system_error&) {
        return; // reading it will say why
    }
    std::vector<fs::path> leftovers;
    for (fs::directory_iterator entry(folder, ignored), end; !ignored && entry != end;
         entry.increment(ignored)) {
        if (isTemporaryName(entry->path().filename().string()) && isLeftOver(entry->path()))
            leftovers.push_back(entry->path());
    }
    for (const fs::path& leftover : leftovers) fs::remove(leftover, ignored);
}

} // namespace hopsel::file_replacement
