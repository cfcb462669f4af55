#include "platform/posix/open_files.h"

#include <algorithm>
#include <fcntl.h>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

namespace hopsel::posix {

namespace {

/// What programs count on; more helps nobody who still uses select().
constexpr rlim_t usualLimit = 1024;

void raiseLimit() {
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
    const rlim_t wanted = std::min(usualLimit, limit.rlim_max);
    if (limit.rlim_cur >= wanted) return;
    limit.rlim_cur = wanted;
    setrlimit(RLIMIT_NOFILE, &limit); // what can be opened is counted below
}

} // namespace

// Counted by opening them: whoever started us may have left any number open.
void requireOpenFiles(int count) {
    raiseLimit();
    std::vector<int> opened;
    while (static_cast<int>(opened.size()) < count) {
        const int descriptor = open("/", O_RDONLY | O_CLOEXEC);
        if (descriptor < 0) break;
        opened.push_back(descriptor);
    }
    for (const int descriptor : opened) close(descriptor);
    const int found = static_cast<int>(opened.size());
    if (found < count)
        throw std::runtime_error("only " + std::to_string(found) + " more files can be open, and " +
                                 std::to_string(count) + " are needed: raise the limit (ulimit -n)");
}

} // namespace hopsel::posix
