#include "core/platform/linux/system_log.h"

#include "session/file_descriptor.h"

#include <array>
#include <gmock/gmock.h>

namespace hopsel {
namespace {

TEST(SystemLog, WritesOneLineToStandardErrorWhereNoJournalRuns) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    const session::FileDescriptor readEnd(ends[0]);
    session::FileDescriptor writeEnd(ends[1]);

    SystemLog log(writeEnd.get(), "/nonexistent/journal");
    log.write(Log::Level::error, std::string_view("ActiveTapXX", 9), "start failed: 100%s of it");
    log.write(Log::Level::info, "ActiveTap", std::string_view("start now", 5));
    writeEnd.reset();

    std::string text(200, '\0');
    text.resize(static_cast<std::size_t>(read(readEnd.get(), text.data(), text.size())));
    EXPECT_EQ(text, "hopsel: start failed: 100%s of it\nhopsel: start\n");
}

} // namespace
} // namespace hopsel
