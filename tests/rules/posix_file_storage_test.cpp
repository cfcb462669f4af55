#include "core/platform/posix/posix_file_storage.h"

#include "rules/temporary_folder.h"

#include <functional>
#include <gmock/gmock.h>
#include <optional>
#include <system_error>

namespace hopsel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

int errorOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const std::system_error& error) {
        return error.code().value();
    }
    return 0;
}

class PosixFileStorageTest : public testing::Test {
  protected:
    TemporaryFolder folder;
    PosixFileStorage storage{folder.path()};
    const fs::path file = folder / "config.json";
};

TEST_F(PosixFileStorageTest, what_is_written_is_read_back_and_nothing_else_lies_around) {
    for (const std::string& text :
         {std::string("old"), std::string(), std::string(300'000, 'x') + '\0' + "\xff"}) {
        storage.writeAtomically(file, text);
        EXPECT_EQ(storage.read(file), text);
    }
    EXPECT_THAT(folder.listing(), ElementsAre("config.json"));
}

TEST_F(PosixFileStorageTest, new_files_obey_the_umask_and_old_ones_keep_their_mode) {
    const mode_t before = ::umask(027);
    storage.writeAtomically(file, "new");
    EXPECT_EQ(modeOf(file), 0640U);
    ::chmod(file.c_str(), 0606);
    storage.writeAtomically(file, "again");
    EXPECT_EQ(modeOf(file), 0606U);
    ::umask(before);
}

TEST_F(PosixFileStorageTest, a_link_is_followed_to_the_file_and_stays_a_link) {
    fs::create_directories(folder / "dotfiles/hopsel");
    const fs::path target = folder / "dotfiles/hopsel/settings";
    fs::create_symlink("dotfiles/link", file);
    fs::create_symlink("hopsel/settings", folder / "dotfiles/link"); // relative to where the link lies
    EXPECT_FALSE(storage.exists(file));

    storage.writeAtomically(file, "new"); // the links dangle: the file comes to be where they point
    ::chmod(target.c_str(), 0600);
    storage.writeAtomically(file, "newer");
    EXPECT_TRUE(storage.exists(file));
    EXPECT_TRUE(fs::is_symlink(file));
    EXPECT_EQ(contents(target), "newer");
    EXPECT_EQ(modeOf(target), 0600U);
    EXPECT_THAT(folder.listing(), ElementsAre("config.json", "dotfiles", "dotfiles/hopsel",
                                              "dotfiles/hopsel/settings", "dotfiles/link"));
}

TEST_F(PosixFileStorageTest, what_is_no_regular_file_is_neither_read_nor_replaced_nor_waited_for) {
    fs::create_directory(folder / "folder");
    ASSERT_EQ(::mkfifo((folder / "fifo").c_str(), 0666), 0);
    fs::create_symlink("loop", folder / "loop");
    const std::pair<const char*, int> cases[] = {
        {"folder", EISDIR}, {"fifo", EINVAL}, {"loop", ELOOP}, {"config.json/x", ENOTDIR}};
    put(file, "old");
    for (const auto& [name, error] : cases) {
        EXPECT_EQ(errorOf([&, n = name] { storage.read(folder / n); }), error) << name;
        EXPECT_EQ(errorOf([&, n = name] { storage.writeAtomically(folder / n, "x"); }), error) << name;
    }
    EXPECT_TRUE(storage.exists(folder / "loop")); // so that reading it tells the user about the loop
    EXPECT_TRUE(fs::is_fifo(folder / "fifo"));
    EXPECT_THAT(folder.listing(), ElementsAre("config.json", "fifo", "folder", "loop"));
    EXPECT_EQ(errorOf([&] { storage.read(folder / "none"); }), ENOENT);
}

TEST_F(PosixFileStorageTest, a_file_of_absurd_size_is_refused_unread) {
    put(file, "");
    fs::resize_file(file, PosixFileStorage::maxFileSize + 1);
    EXPECT_EQ(errorOf([&] { storage.read(file); }), EFBIG);
}

TEST_F(PosixFileStorageTest, a_full_disk_costs_nothing) {
    put(file, "the old settings, longer than the disk allows");
    {
        const FullDisk full;
        EXPECT_EQ(errorOf([&] { storage.writeAtomically(file, std::string(1000, 'x')); }), EFBIG);
        EXPECT_EQ(errorOf([&] { storage.copy(file, folder / "copy"); }), EFBIG);
    }
    EXPECT_EQ(contents(file), "the old settings, longer than the disk allows");
    EXPECT_THAT(folder.listing(), ElementsAre("config.json"));
}

TEST_F(PosixFileStorageTest, permissions_are_reported_and_do_not_pass_for_a_missing_file) {
    fs::create_directory(folder / "locked");
    put(folder / "locked/config.json", "old");
    put(file, "old");
    ::chmod(file.c_str(), 0);
    ::chmod((folder / "locked").c_str(), 0555);
    {
        const OrdinaryUser user;
        EXPECT_EQ(errorOf([&] { storage.read(file); }), EACCES);
        EXPECT_EQ(errorOf([&] { storage.writeAtomically(folder / "locked/config.json", "new"); }), EACCES);
        EXPECT_EQ(errorOf([&] { storage.createDirectories(folder / "locked/below"); }), EACCES);
    }
    EXPECT_EQ(contents(folder / "locked/config.json"), "old");
    ::chmod((folder / "locked").c_str(), 0);
    {
        const OrdinaryUser user;
        EXPECT_TRUE(storage.exists(folder / "locked/config.json"));
    }
    ::chmod((folder / "locked").c_str(), 0755);
}

TEST_F(PosixFileStorageTest, a_copy_is_private_and_never_replaces_anything) {
    put(file, "text");
    storage.copy(file, folder / "copy");
    EXPECT_EQ(contents(folder / "copy"), "text");
    EXPECT_EQ(modeOf(folder / "copy"), 0600U);
    put(file, "other");
    EXPECT_EQ(errorOf([&] { storage.copy(file, folder / "copy"); }), EEXIST);
    EXPECT_EQ(contents(folder / "copy"), "text");
}

TEST(XdgDataHome, is_the_variable_if_absolute_and_else_below_home) {
    const auto set = [](const char* name, const std::optional<std::string>& value) {
        value ? ::setenv(name, value->c_str(), 1) : ::unsetenv(name);
    };
    const auto get = [](const char* name) {
        const char* value = std::getenv(name);
        return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
    };
    const auto oldData = get("XDG_DATA_HOME");
    const auto oldHome = get("HOME");
    set("HOME", "/home/me");
    set("XDG_DATA_HOME", "/data");
    EXPECT_EQ(PosixFileStorage::xdgDataHome(), "/data");
    for (const std::optional<std::string>& unusable :
         {std::optional<std::string>(), {"relative/data"}, {""}}) {
        set("XDG_DATA_HOME", unusable);
        EXPECT_EQ(PosixFileStorage::xdgDataHome(), "/home/me/.local/share");
    }
    set("HOME", std::nullopt);
    EXPECT_TRUE(PosixFileStorage::xdgDataHome().is_absolute());
    set("HOME", oldHome);
    set("XDG_DATA_HOME", oldData);
}

} // namespace
} // namespace hopsel
