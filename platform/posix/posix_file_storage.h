// `FileStorage` on the file system calls that Linux and macOS share. Owned by whoever makes the settings
// store.
//
// Holds nothing open between calls. The files are small: everything happens on the caller's thread.
#pragma once

#include "core/platform/file_storage.h"

namespace hopsel {

class PosixFileStorage : public FileStorage {
  public:
    /// Larger files are refused unread (EFBIG): no settings file is, and reading one would only eat the
    /// memory.
    static constexpr std::size_t maxFileSize = std::size_t{16} << 20U;

    explicit PosixFileStorage(std::filesystem::path userDataDirectory)
        : userDataDirectory_(std::move(userDataDirectory)) {}

    /// $XDG_DATA_HOME if that is an absolute path, else ".local/share" in the home directory (the XDG base
    /// directories).
    static std::filesystem::path xdgDataHome();

    std::filesystem::path userDataDirectory() const override { return userDataDirectory_; }
    bool exists(const std::filesystem::path& file) const override;
    std::string read(const std::filesystem::path& file) const override;
    void createDirectories(const std::filesystem::path& folder) override;
    void writeAtomically(const std::filesystem::path& file, std::string_view bytes) override;
    std::optional<FileMark> mark(const std::filesystem::path& file) const override;
    bool replace(const std::filesystem::path& file, const std::optional<FileMark>& expected,
                 std::string_view bytes) override;
    std::vector<std::filesystem::path> startingWith(const std::filesystem::path& beginning) const override;
    void clearLeftovers(const std::filesystem::path& file) override;
    /// The copy is for the user alone (mode 0600).
    void copy(const std::filesystem::path& from, const std::filesystem::path& to) override;

  private:
    std::filesystem::path userDataDirectory_;
};

} // namespace hopsel
