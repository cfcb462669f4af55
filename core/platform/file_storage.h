// The seam between the settings store and the disk.
//
// The store decides what is written and when; this decides how, so that a crash or a full disk never costs
// the user the file. Failures are `std::system_error` with the platform's own text and are passed on
// unchanged.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hopsel {

/// What tells one state of a file from another without reading it.
struct FileMark {
    std::uint64_t device = 0;
    std::uint64_t file = 0;
    std::int64_t size = 0;     ///< in bytes
    std::int64_t written = 0;  ///< nanoseconds since 1970; any program can set this one
    std::int64_t modified = 0; ///< of contents, owner or mode

    friend bool operator==(const FileMark&, const FileMark&) = default;
};

class FileStorage {
  public:
    FileStorage() = default;
    FileStorage(const FileStorage&) = delete;
    FileStorage& operator=(const FileStorage&) = delete;
    virtual ~FileStorage() = default;

    /// Where applications keep the user's data; "Hopsel/config.json" lies beneath.
    virtual std::filesystem::path userDataDirectory() const = 0;

    /// True also for what is there but cannot be read; false for a link whose target is missing.
    virtual bool exists(const std::filesystem::path& file) const = 0;

    /// The whole file. Anything but a regular file is an error, and is never waited for.
    virtual std::string read(const std::filesystem::path& file) const = 0;

    virtual void createDirectories(const std::filesystem::path& folder) = 0;

    /// Replaces the file's contents in one durable step: after a crash there is the old text or the new one.
    /// Follows symbolic links to the file they name, and keeps that file's mode.
    virtual void writeAtomically(const std::filesystem::path& file, std::string_view bytes) = 0;

    /// Absent if nothing is there.
    virtual std::optional<FileMark> mark(const std::filesystem::path& file) const = 0;

    /// As `writeAtomically`, over what bears this mark (where nothing is, if there is none) and nothing else:
    /// false if the file has become another.
    virtual bool replace(const std::filesystem::path& file, const std::optional<FileMark>& expected,
                         std::string_view bytes) = 0;

    /// The files whose paths begin like that, in the same folder.
    virtual std::vector<std::filesystem::path> startingWith(const std::filesystem::path& beginning) const = 0;

    /// Removes what a write of this file left beside it when it was cut off.
    virtual void clearLeftovers(const std::filesystem::path& file) = 0;

    /// Copies to a name that must not exist yet.
    virtual void copy(const std::filesystem::path& from, const std::filesystem::path& to) = 0;
};

} // namespace hopsel
