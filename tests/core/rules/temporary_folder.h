// A real folder for each test, and two ways in which a real disk refuses: full, and not the user's to write.
#pragma once

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace hopsel {

class FolderTest : public testing::Test {
  protected:
    FolderTest() { ::chmod(folder.c_str(), 0755); } // an ordinary user comes here too
    ~FolderTest() override { std::filesystem::remove_all(folder); }

    /// Everything in the folder and below.
    std::set<std::string> listing() const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
            names.insert(entry.path().lexically_relative(folder).string());
        return names;
    }

    const std::filesystem::path folder =
        ::mkdtemp((std::filesystem::temp_directory_path() / "hopsel-test-XXXXXX").string().data());
};

inline void put(const std::filesystem::path& file, const std::string& text) {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
}

inline std::string contents(const std::filesystem::path& file) {
    return (std::ostringstream() << std::ifstream(file, std::ios::binary).rdbuf()).str();
}

/// While this runs, no file can grow beyond a few bytes: a write ends short and the next one fails.
template <typename Action>
void onFullDisk(Action action) {
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit full{16, limit.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &full);
    action();
    ::setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, handler);
}

/// While this runs, permission bits bind, also where the tests run as root.
template <typename Action>
void asOrdinaryUser(Action action) {
    const uid_t user = ::geteuid();
    ASSERT_EQ(user == 0 ? ::seteuid(65534) : 0, 0);
    action();
    ASSERT_EQ(::seteuid(user), 0);
}

} // namespace hopsel
