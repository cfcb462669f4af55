// A real folder for one test, and two ways in which a real disk refuses: full, and not the user's to write.
#pragma once

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace hopsel {

class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "hopsel-test-XXXXXX").string();
        path_ = ::mkdtemp(name.data());
        ::chmod(path_.c_str(), 0755); // `OrdinaryUser` comes here too
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() { std::filesystem::remove_all(path_); }

    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }
    const std::filesystem::path& path() const { return path_; }

    /// Everything in the folder and below, sorted.
    std::vector<std::string> listing() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(path_)) {
            names.push_back(entry.path().lexically_relative(path_).string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

  private:
    std::filesystem::path path_;
};

inline void put(const std::filesystem::path& file, const std::string& text) {
    std::ofstream(file, std::ios::binary) << text;
}

inline std::string contents(const std::filesystem::path& file) {
    std::ifstream input(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(input), {}};
}

inline unsigned modeOf(const std::filesystem::path& file) {
    struct stat status{};
    return ::stat(file.c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
}

/// While it lives, no file can grow beyond a few bytes: a write ends short and the next one fails.
class FullDisk {
  public:
    FullDisk() : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &limit_);
        const rlimit full{16, limit_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &full);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    ~FullDisk() {
        ::setrlimit(RLIMIT_FSIZE, &limit_);
        std::signal(SIGXFSZ, handler_);
    }

  private:
    void (*handler_)(int);
    rlimit limit_{};
};

/// While it lives, permission bits bind, also where the tests run as root.
class OrdinaryUser {
  public:
    OrdinaryUser() : user_(::geteuid()) {
        if (user_ == 0 && ::seteuid(65534) != 0) ADD_FAILURE();
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    ~OrdinaryUser() {
        if (user_ == 0 && ::seteuid(0) != 0) ADD_FAILURE();
    }

  private:
    uid_t user_;
};

} // namespace hopsel
