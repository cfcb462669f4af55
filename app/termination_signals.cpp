#include "app/termination_signals.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/time.h>
#include <system_error>
#include <unistd.h>

namespace hopsel {

namespace {

// A signal handler may do little more than write to a pipe, and can be given nothing but globals.
std::array<int, 2> signalPipe{-1, -1};

void onSignalReceived(int) {
    const int savedError = errno;
    // Whatever hangs, within the second.
    const itimerval limit{.it_interval = {}, .it_value = {.tv_sec = 0, .tv_usec = 900'000}};
    setitimer(ITIMER_REAL, &limit, nullptr);
    const char byte = 0;
    // A full pipe says what this byte would say.
    [[maybe_unused]] const ssize_t written = write(signalPipe[1], &byte, 1);
    errno = savedError;
}

void handle(int signal, void (*handler)(int)) {
    struct sigaction action{};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigaction(signal, &action, nullptr);
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> onSignal) {
    if (pipe(signalPipe.data()) != 0)
        throw std::system_error(errno, std::generic_category(), "cannot watch for signals");
    for (const int end : signalPipe) { // in one step only on Linux; nothing is started meanwhile
        fcntl(end, F_SETFD, FD_CLOEXEC);
        fcntl(end, F_SETFL, O_NONBLOCK);
    }
    notifier_ = std::make_unique<QSocketNotifier>(signalPipe[0], QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [callback = std::move(onSignal)](QSocketDescriptor descriptor) {
                         std::array<char, 16> bytes{};
                         while (read(static_cast<int>(descriptor), bytes.data(), bytes.size()) > 0) {
                         }
                         callback();
                     });
    handle(SIGALRM, [](int) { _exit(EXIT_FAILURE); });
    handle(SIGTERM, onSignalReceived);
    handle(SIGINT, onSignalReceived);
    // Unlike being ignored, what we start does not inherit this.
    for (const int signal : {SIGPIPE, SIGXFSZ}) handle(signal, [](int) {});
}

TerminationSignals::~TerminationSignals() {
    handle(SIGTERM, SIG_DFL);
    handle(SIGINT, SIG_DFL);
    notifier_.reset();
    for (int& end : signalPipe) {
        close(end);
        end = -1;
    }
}

} // namespace hopsel
