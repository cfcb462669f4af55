#include "platform/linux/x11/keyboard_guard.h"

#include <cerrno>
#include <csignal>
#include <new>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace hopsel {

namespace {

std::weak_ptr<KeyboardGuard>& theGuard() {
    static std::weak_ptr<KeyboardGuard> guard;
    return guard;
}

} // namespace

std::shared_ptr<KeyboardGuard> KeyboardGuard::start() {
    std::shared_ptr<KeyboardGuard> guard(new KeyboardGuard);
    theGuard() = guard;
    return guard;
}

std::shared_ptr<KeyboardGuard> KeyboardGuard::ofThisProcess() { return theGuard().lock(); }

KeyboardGuard::KeyboardGuard() {
    void* memory =
        mmap(nullptr, sizeof(KeyboardGuardBoard), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) return;
    board_ = new (memory) KeyboardGuardBoard{};
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) return;
    process_ = fork();
    if (process_ == 0) keyboard_guard_process::run(*board_, ends[0]);
    close(ends[0]);
    words_ = ends[1];
}

KeyboardGuard::~KeyboardGuard() {
    if (words_ >= 0) close(words_);
    if (process_ > 0) {
        kill(process_, SIGKILL); // it may be stopped itself
        while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
    if (board_ != nullptr) munmap(board_, sizeof(KeyboardGuardBoard));
}

void KeyboardGuard::watch(const std::array<std::uint32_t, 2>& handles) {
    if (process_ <= 0) return;
    for (std::size_t i = 0; i < handles.size(); ++i) board_->handles[i] = handles[i];
    if (!std::exchange(isWatching_, true)) say(keyboard_guard_process::watchWord);
}

// First of all the handles: the server may give their numbers to another program.
void KeyboardGuard::rest() {
    if (!std::exchange(isWatching_, false)) return;
    for (auto& handle : board_->handles) handle = 0;
    say(keyboard_guard_process::restWord);
}

void KeyboardGuard::say(char word) const {
    // One that is gone, or stands still itself, is none.
    [[maybe_unused]] const ssize_t sent = send(words_, &word, 1, MSG_NOSIGNAL | MSG_DONTWAIT);
}

void KeyboardGuard::handled(const KeyMoment& key) {
    if (isWatching_) board_->handled.store(key, std::memory_order_relaxed);
}

bool KeyboardGuard::hasCut() { return board_ != nullptr && board_->cuts.exchange(0) != 0; }

} // namespace hopsel
