#include "platform/linux/x11/keyboard_guard.h"

#include "platform/linux/x11/x11_connection.h"
#include "platform/linux/x11/x11_input_devices.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <optional>
#include <poll.h>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <xcb/xinput.h>

namespace hopsel {

struct KeyboardGuard::Shared {
    std::array<std::atomic<std::uint32_t>, 2> clients;
    std::atomic<std::uint32_t> handled; ///< time of the server
    std::atomic<std::uint32_t> cuts;
};

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr char watchWord = 'w', restWord = 'r';
constexpr auto patience = 1000ms;

/// Hears every key, whoever has it.
class Ears {
  public:
    Ears() : opcode_(x11_input_devices::requireXInput2(connection_)) {
        struct {
            xcb_input_event_mask_t header{.deviceid = XCB_INPUT_DEVICE_ALL_MASTER, .mask_len = 1};
            std::uint32_t mask =
                XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE;
        } keys;
        xcb_input_xi_select_events(connection_.get(), connection_.root(), 1, &keys.header);
        connection_.flush();
    }
    int fileDescriptor() const { return connection_.fileDescriptor(); }
    bool isLost() const { return connection_.isLost(); }
    /// The server's time of the last of the keys that have arrived.
    std::optional<std::uint32_t> latest() {
        std::optional<std::uint32_t> time;
        while (const auto event = connection_.nextEvent()) {
            const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(*event);
            if (eventType(*event) == XCB_GE_GENERIC && generic.extension == opcode_)
                time = reinterpret_cast<const xcb_input_raw_key_press_event_t&>(*event).time;
        }
        return time;
    }
    void cut(std::uint32_t client) {
        if (client != 0) xcb_kill_client(connection_.get(), client);
        connection_.flush();
    }

  private:
    X11Connection connection_;
    std::uint8_t opcode_;
};

/// A key that has been heard here: when, and whether the program must have dealt with it by now.
struct Waiting {
    std::uint32_t serverTime;
    Clock::time_point end;
};

bool isNotAfter(std::uint32_t time, std::uint32_t other) {
    return static_cast<std::int32_t>(other - time) >= 0;
}

/// Nothing of the program is kept but the way to it: no signal handler, no connection, no terminal.
void becomeAlone(int commands) {
    prctl(PR_SET_NAME, "keyboard-guard");
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) std::signal(signal, SIG_DFL);
    std::signal(SIGTSTP, SIG_IGN);
    close_range(0, static_cast<unsigned>(commands) - 1, 0);
    close_range(static_cast<unsigned>(commands) + 1, ~0U, 0);
}

} // namespace

KeyboardGuard::KeyboardGuard() {
    void* memory = mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) return;
    shared_ = new (memory) Shared{};
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) return;
    process_ = fork();
    if (process_ == 0) {
        becomeAlone(ends[0]);
        run(*shared_, ends[0]);
    }
    close(ends[0]);
    commands_ = ends[1];
}

KeyboardGuard::~KeyboardGuard() {
    if (commands_ >= 0) close(commands_);
    if (process_ > 0) {
        kill(process_, SIGKILL); // it may be stopped itself
        while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
    if (shared_ != nullptr) munmap(shared_, sizeof(Shared));
}

void KeyboardGuard::watch(std::array<std::uint32_t, 2> clients) {
    if (process_ <= 0) return;
    for (std::size_t i = 0; i < clients.size(); ++i) shared_->clients[i] = clients[i];
    if (!std::exchange(isWatching_, true)) say(watchWord);
}

void KeyboardGuard::rest() {
    if (std::exchange(isWatching_, false)) say(restWord);
}

void KeyboardGuard::say(char word) const {
    // One that is gone, or stands still itself, is none.
    [[maybe_unused]] const ssize_t sent = send(commands_, &word, 1, MSG_NOSIGNAL | MSG_DONTWAIT);
}

void KeyboardGuard::handled(std::uint32_t serverTime) {
    if (shared_ != nullptr) shared_->handled.store(serverTime, std::memory_order_relaxed);
}

bool KeyboardGuard::hasCut() { return shared_ != nullptr && shared_->cuts.exchange(0) != 0; }

void KeyboardGuard::run(Shared& shared, int commands) {
    std::unique_ptr<Ears> ears;
    std::optional<Waiting> waiting;
    Waiting latest{};
    const auto isHandled = [&shared](std::uint32_t time) { return isNotAfter(time, shared.handled); };
    while (true) {
        std::array<pollfd, 2> watched{
            {{.fd = commands, .events = POLLIN, .revents = 0},
             {.fd = ears ? ears->fileDescriptor() : -1, .events = POLLIN, .revents = 0}}};
        int timeout = -1;
        if (waiting)
            timeout = static_cast<int>(
                std::max(0ms, std::chrono::ceil<std::chrono::milliseconds>(waiting->end - Clock::now()))
                    .count());
        poll(watched.data(), watched.size(), timeout);
        if (watched[0].revents != 0) {
            std::array<char, 16> words{};
            const ssize_t count = read(commands, words.data(), words.size());
            if (count == 0) _exit(0);
            ears.reset();
            waiting.reset();
            try {
                if (count > 0 && words[static_cast<std::size_t>(count) - 1] == watchWord)
                    ears = std::make_unique<Ears>();
            } catch (const std::runtime_error&) { // a server that goes: the hook has gone with it
            }
        }
        if (!ears) continue;
        if (const auto time = ears->latest()) {
            latest = {*time, Clock::now() + patience};
            if (!waiting || isHandled(waiting->serverTime)) waiting = latest;
        }
        if (ears->isLost()) {
            ears.reset();
            waiting.reset();
        } else if (waiting && isHandled(waiting->serverTime)) {
            waiting.reset();
            if (!isHandled(latest.serverTime)) waiting = latest;
        } else if (waiting && Clock::now() >= waiting->end) {
            waiting.reset();
            ++shared.cuts; // before, as the program may go on at once
            for (const auto& client : shared.clients) ears->cut(client);
        }
    }
}

} // namespace hopsel
