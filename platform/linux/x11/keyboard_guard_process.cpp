#include "platform/linux/x11/keyboard_guard_process.h"

#include "platform/linux/x11/x11_connection.h"
#include "platform/linux/x11/x11_input_devices.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <memory>
#include <optional>
#include <poll.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <unistd.h>
#include <xcb/xinput.h>

namespace hopsel::keyboard_guard_process {

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr auto patience = 1000ms;
/// The server wakes everyone who hears a key, and whoever is woken first takes a processor from the others.
/// So one key is enough for a while, in which the next ones wait unread.
constexpr auto pause = 250ms;

/// Hears every key, whoever has it.
class Ears {
  public:
    Ears() : opcode_(x11_input_devices::requireXInput2(connection_)) {
        const struct {
            xcb_input_event_mask_t header{.deviceid = XCB_INPUT_DEVICE_ALL_MASTER, .mask_len = 1};
            std::uint32_t mask =
                XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE;
        } keys;
        xcb_input_xi_select_events(connection_.get(), connection_.root(), 1, &keys.header);
        connection_.flush();
    }

    int fileDescriptor() const { return connection_.fileDescriptor(); }
    bool isLost() const { return connection_.isLost(); }

    /// Takes what has arrived; false if there was nothing.
    bool hear() {
        bool hasHeard = false;
        while (const auto event = connection_.nextEvent()) {
            const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(*event);
            if (eventType(*event) != XCB_GE_GENERIC || generic.extension != opcode_) continue;
            latest_ = latest_.next(reinterpret_cast<const xcb_input_raw_key_press_event_t&>(*event).time);
            hasHeard = true;
        }
        return hasHeard;
    }
    KeyMoment latest() const { return latest_; }

    void cut(std::uint32_t handle) {
        xcb_kill_client(connection_.get(), handle);
        connection_.flush();
    }

  private:
    X11Connection connection_;
    std::uint8_t opcode_;
    KeyMoment latest_;
};

class Guard {
  public:
    Guard(KeyboardGuardBoard& board, int words) : board_(board), words_(words) {}

    /// False once the program has gone.
    bool turn() {
        std::array<pollfd, 2> watched{
            {{.fd = words_, .events = POLLIN, .revents = 0},
             {.fd = ears_ && !pauseEnd_ ? ears_->fileDescriptor() : -1, .events = POLLIN, .revents = 0}}};
        poll(watched.data(), watched.size(), millisecondsLeft());
        if (watched[0].revents != 0 && !takeWords()) return false;
        if (!ears_) return true;
        const auto now = Clock::now();
        if (pauseEnd_ && now >= *pauseEnd_) pauseEnd_.reset();
        if (!pauseEnd_ && ears_->hear()) {
            latest_ = {ears_->latest(), now + patience};
            if (!waiting_) waiting_ = latest_;
            pauseEnd_ = now + pause;
        }
        if (ears_->isLost())
            rest();
        else
            judge();
        return true;
    }

  private:
    struct Key {
        KeyMoment moment;
        Clock::time_point end;
    };

    int millisecondsLeft() const {
        if (!waiting_ && !pauseEnd_) return -1;
        auto end = Clock::time_point::max();
        if (waiting_) end = waiting_->end;
        if (pauseEnd_) end = std::min(end, *pauseEnd_);
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
        return static_cast<int>(std::max(0ms, left).count());
    }

    bool takeWords() {
        std::array<char, 16> said{};
        const ssize_t count = read(words_, said.data(), said.size());
        if (count == 0) return false;
        if (count < 0) return true;
        rest();
        if (said[static_cast<std::size_t>(count) - 1] != watchWord) return true;
        try {
            ears_ = std::make_unique<Ears>();
        } catch (const std::runtime_error&) {
            rest(); // a server that goes, or takes no more clients
        }
        return true;
    }

    void rest() {
        ears_.reset();
        waiting_.reset();
        pauseEnd_.reset();
    }

    /// A key that the program has dealt with waits no more; but a later one may.
    void judge() {
        const auto isHandled = [this](const Key& key) { return key.moment.isNotAfter(board_.handled); };
        if (!waiting_) return;
        if (isHandled(*waiting_)) {
            waiting_.reset();
            if (!isHandled(latest_)) waiting_ = latest_;
        } else if (Clock::now() >= waiting_->end) {
            waiting_.reset();
            cut();
        }
    }

    void cut() {
        for (auto& each : board_.handles) {
            const std::uint32_t handle = each.exchange(0);
            if (handle == 0) continue;
            ++board_.cuts; // before, as the program may go on at once
            ears_->cut(handle);
        }
    }

    KeyboardGuardBoard& board_;
    int words_;
    std::unique_ptr<Ears> ears_;
    std::optional<Key> waiting_; ///< the first that has not been dealt with
    Key latest_{};
    std::optional<Clock::time_point> pauseEnd_; ///< until which nothing is heard
};

/// Nothing of the program is kept but the way to it: no signal, no terminal, no file; and nobody looks in.
void becomeAlone(int words) {
    prctl(PR_SET_NAME, "keyboard-guard");
    prctl(PR_SET_DUMPABLE, 0);
    setsid();
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) std::signal(signal, SIG_DFL);
    close_range(0, static_cast<unsigned>(words) - 1, 0);
    close_range(static_cast<unsigned>(words) + 1, ~0U, 0);
}

} // namespace

void run(KeyboardGuardBoard& board, int words) {
    becomeAlone(words);
    Guard guard(board, words);
    while (guard.turn()) {
    }
    _exit(0);
}

} // namespace hopsel::keyboard_guard_process
