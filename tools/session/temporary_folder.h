// A folder of a test's own under the system's temporary folder, removed with everything in it at the end.
#pragma once

#include <filesystem>
#include <string_view>

namespace hopsel::session {

class TemporaryFolder {
  public:
    /// Throws `std::runtime_error` when the folder cannot be made.
    TemporaryFolder();
    /// Also removes what a test made unreadable or unwritable.
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

    /// Writes a file beneath, with the folders it needs, and returns its full path.
    std::filesystem::path write(const std::filesystem::path& name, std::string_view text) const;

  private:
    std::filesystem::path path_;
};

} // namespace hopsel::session
