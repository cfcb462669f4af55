#include "platform/linux/keys_helper/session/helper_child.h"

#include "platform/linux/base/child_process.h"

#include <array>
#include <sys/socket.h>
#include <unistd.h>

namespace hopsel::helper_child {

int start(const std::string& program) {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) return -1;
    const bool isStarted =
        child_process::start({program, "--session", std::to_string(ends[1])}, ends[1], nullptr);
    close(ends[1]);
    if (isStarted) return ends[0];
    close(ends[0]);
    return -1;
}

} // namespace hopsel::helper_child
