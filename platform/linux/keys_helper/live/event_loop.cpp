#include "platform/linux/keys_helper/live/event_loop.h"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <ctime>
#include <sys/epoll.h>
#include <sys/time.h>
#include <system_error>
#include <utility>

namespace hopsel {

namespace {

void require(int result) {
    if (result < 0) throw std::system_error(-result, std::generic_category(), "the helper's loop");
}

/// SIGALRM, which nobody handles, after so many seconds; 0: not any more.
void armGuard(time_t seconds) {
    itimerval timer{};
    timer.it_value.tv_sec = seconds;
    setitimer(ITIMER_REAL, &timer, nullptr);
}

} // namespace

struct EventLoop::Watch::State {
    State() = default;
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State() { sd_event_source_disable_unref(source); }

    void called() const {
        const auto kept = call; // it may be destroyed by what it calls
        kept();
    }

    std::function<void()> call;
    sd_event_source* source = nullptr;
};

EventLoop::EventLoop() {
    sd_event* loop = nullptr;
    require(sd_event_new(&loop));
    loop_.reset(loop);
    require(sd_event_set_watchdog(loop, 1)); // nothing, but in a service that has one
    sigset_t asked;
    sigemptyset(&asked);
    for (const int signal : {SIGTERM, SIGINT}) sigaddset(&asked, signal);
    sigprocmask(SIG_BLOCK, &asked, nullptr);
    for (const int signal : {SIGTERM, SIGINT})
        require(sd_event_add_signal(
            loop, nullptr, signal,
            [](sd_event_source*, const signalfd_siginfo*, void* self) {
                static_cast<EventLoop*>(self)->end();
                return 0;
            },
            this));
}

EventLoop::Watch EventLoop::whenReadable(int descriptor, std::function<void()> call) {
    Watch watch;
    watch.state_ = std::make_shared<Watch::State>();
    watch.state_->call = std::move(call);
    require(sd_event_add_io(
        loop_.get(), &watch.state_->source, descriptor, EPOLLIN,
        [](sd_event_source*, int, std::uint32_t, void* state) {
            static_cast<const Watch::State*>(state)->called();
            return 0;
        },
        watch.state_.get()));
    return watch;
}

EventLoop::Watch EventLoop::after(std::chrono::microseconds time, std::function<void()> call) {
    Watch watch;
    watch.state_ = std::make_shared<Watch::State>();
    watch.state_->call = std::move(call);
    require(sd_event_add_time_relative(
        loop_.get(), &watch.state_->source, CLOCK_MONOTONIC, static_cast<std::uint64_t>(time.count()), 1,
        [](sd_event_source*, std::uint64_t, void* state) {
            static_cast<const Watch::State*>(state)->called();
            return 0;
        },
        watch.state_.get()));
    return watch;
}

void EventLoop::run() {
    constexpr time_t longestTurn = 2;
    while (!isOver_) {
        int ready = sd_event_prepare(loop_.get());
        if (ready == 0) ready = sd_event_wait(loop_.get(), UINT64_MAX);
        if (ready == 0 || ready == -EINTR) continue;
        require(ready);
        armGuard(longestTurn);
        require(sd_event_dispatch(loop_.get()));
        armGuard(0);
    }
}

} // namespace hopsel
