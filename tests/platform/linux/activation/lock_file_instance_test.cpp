#include "platform/linux/activation/lock_file_instance.h"
#include "session/temporary_folder.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace hopsel::test {
namespace {

TEST(LockFileInstance, IsOneForEachUserAndNobodyElseCanTakeItsPlace) {
    const session::TemporaryFolder folder;
    setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
    setenv("DISPLAY", ":squatted", 1);
    LockFileInstance first;
    ASSERT_TRUE(first.acquire());
    LockFileInstance second;
    EXPECT_FALSE(second.acquire());
    EXPECT_EQ(second.otherProcess(), getpid());

    constexpr uid_t nobody = 65534;
    const auto lock = folder.path() / "hopsel:squatted.lock";
    if (chown(lock.c_str(), nobody, nobody) != 0) GTEST_SKIP() << "only root can play another user";
    EXPECT_TRUE(second.acquire());
    EXPECT_EQ(second.otherProcess(), std::nullopt);
}

} // namespace
} // namespace hopsel::test
