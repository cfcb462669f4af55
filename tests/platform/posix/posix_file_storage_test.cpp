#include "platform/posix/posix_file_storage.h"

#include "core/rules/temporary_folder.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <system_error>

namespace hopsel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

auto failsWith(int error) {
    const std::error_code code(error, std::generic_category());
    return testing::Throws<std::system_error>(testing::Property(&std::system_error::code, code));
}

class PosixFileStorageTest : public FolderTest {
  protected:
    PosixFileStorage storage{folder};
    const fs::path file = folder / "config.json";
};

TEST_F(PosixFileStorageTest, WhatIsWrittenIsReadBackAndNothingElseLiesAround) {
    storage.createDirectories(folder / "a/b");
    for (const char* made : {"a", "a/b"}) EXPECT_EQ(fs::status(folder / made).permissions(), fs::perms(0700));
    ::chmod((folder / "a").c_str(), 0755);
    storage.createDirectories(folder / "a");
    EXPECT_EQ(fs::status(folder / "a").permissions(), fs::perms(0755)) << "is somebody's wish";
    storage.writeAtomically(folder / "a/file", "");
    EXPECT_THROW(storage.createDirectories(folder / "a/file/b"), std::system_error);
    fs::remove_all(folder / "a");
    for (const std::string& text : {std::string("old"), std::string(), std::string(300'000, 'x') + '\0'}) {
        storage.writeAtomically(file, text);
        EXPECT_EQ(storage.read(file), text);
        EXPECT_EQ(fs::status(file).permissions(), fs::perms(0600)) << "the user's alone";
    }
    EXPECT_THAT(listing(), ElementsAre("config.json"));

    storage.writeAtomically(file, "old");
    fs::create_hard_link(file, folder / "held");
    storage.writeAtomically(file, "new");
    EXPECT_EQ(contents(folder / "held"), "old") << "whoever reads it meanwhile reads all of one or the other";
    EXPECT_EQ(storage.read(file), "new");
}

TEST_F(PosixFileStorageTest, ALinkIsFollowedToTheFileAndStaysALink) {
    fs::create_directories(folder / "dots/hopsel");
    fs::create_symlink("dots/link", file);
    fs::create_symlink("hopsel/file", folder / "dots/link"); // relative to where the link lies
    EXPECT_FALSE(storage.exists(file));
    storage.writeAtomically(file, "new"); // the links dangle: the file comes to be where they point
    ::chmod(file.c_str(), 0606);
    storage.writeAtomically(file, "newer");
    EXPECT_TRUE(fs::is_symlink(file));
    EXPECT_EQ(contents(folder / "dots/hopsel/file"), "newer");
    EXPECT_EQ(fs::status(file).permissions(), fs::perms(0606));
    EXPECT_THAT(listing(),
                ElementsAre("config.json", "dots", "dots/hopsel", "dots/hopsel/file", "dots/link"));
}

TEST_F(PosixFileStorageTest, WhatIsNoPlainFileIsNeitherReadNorReplacedNorWaitedFor) {
    fs::create_directory(folder / "folder");
    ASSERT_EQ(::mkfifo((folder / "fifo").c_str(), 0666), 0);
    fs::create_symlink("loop", folder / "loop");
    put(file, "old");
    const std::pair<const char*, int> cases[] = {
        {"folder", EISDIR}, {"fifo", EINVAL}, {"loop", ELOOP}, {"config.json/x", ENOTDIR}};
    for (const auto& [name, error] : cases) {
        const fs::path path = folder / name;
        EXPECT_THAT([&] { storage.read(path); }, failsWith(error)) << name;
        EXPECT_THAT([&] { storage.writeAtomically(path, "x"); }, failsWith(error)) << name;
    }
    EXPECT_TRUE(storage.exists(folder / "loop")); // so that reading it tells the user about the loop
    EXPECT_TRUE(fs::is_fifo(folder / "fifo"));
    EXPECT_THAT(listing(), ElementsAre("config.json", "fifo", "folder", "loop"));
    fs::resize_file(file, PosixFileStorage::maxFileSize + 1);
    EXPECT_THAT([&] { storage.read(file); }, failsWith(EFBIG));
}

TEST_F(PosixFileStorageTest, OnlyWhatBearsTheMarkIsReplacedAndEveryWriterLeavesAnotherMark) {
    EXPECT_EQ(storage.mark(file), std::nullopt);
    ASSERT_TRUE(storage.replace(file, std::nullopt, "ours"));
    EXPECT_FALSE(storage.replace(file, std::nullopt, "as if nothing were there"));
    const auto ours = storage.mark(file);
    const auto time = fs::last_write_time(file);
    put(file, "they");
    fs::last_write_time(file, time);
    EXPECT_NE(storage.mark(file), ours) << "of the same size, and its time set back";
    EXPECT_FALSE(storage.replace(file, ours, "ours"));
    EXPECT_EQ(contents(file), "they");
    EXPECT_TRUE(storage.replace(file, storage.mark(file), "ours"));
    EXPECT_THAT(listing(), ElementsAre("config.json"));
}

TEST_F(PosixFileStorageTest, WhatAKilledWriterLeftIsClearedAndNothingElse) {
    fs::create_symlink("dots/config.json", file);
    for (const char* name :
         {".hopsel-left0verleft", ".hopsel-stillwriting", ".hopsel-notes", ".hopsel-UPPERCASEABC"})
        put(folder / "dots" / name, "half a");
    fs::create_symlink("config.json", folder / "dots/.hopsel-linklinklink");
    const int writer = ::open((folder / "dots/.hopsel-stillwriting").c_str(), O_WRONLY);
    ASSERT_EQ(::flock(writer, LOCK_EX), 0);
    storage.clearLeftovers(file);
    EXPECT_THAT(listing(),
                ElementsAre("config.json", "dots", "dots/.hopsel-UPPERCASEABC", "dots/.hopsel-linklinklink",
                            "dots/.hopsel-notes", "dots/.hopsel-stillwriting"));
    ::close(writer);
    storage.clearLeftovers(file);
    EXPECT_FALSE(fs::exists(folder / "dots/.hopsel-stillwriting"));
    storage.clearLeftovers(folder / "nowhere/config.json");
}

} // namespace
} // namespace hopsel
