#include "session/child_process.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h> // environ
#include <utility>

namespace hopsel::session {

namespace {

struct Pipe {
    FileDescriptor readEnd, writeEnd;
};

[[noreturn]] void fail(const std::string& what, int error) {
    throw std::runtime_error(what + ": " + std::generic_category().message(error));
}

Pipe makePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) fail("cannot make a pipe", errno);
    return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

/// The test's environment with the changes, as NAME=value.
std::vector<std::string> mergedEnvironment(const ChildProcess::Options& options) {
    std::vector<std::string> merged;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string_view text(*entry);
        if (!options.environment.contains(std::string(text.substr(0, text.find('=')))))
            merged.emplace_back(text);
    }
    for (const auto& [name, value] : options.environment) {
        if (value) merged.push_back(name + "=" + *value);
    }
    return merged;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (std::string& text : texts) result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

/// Between fork and exec: only calls that are safe there.
void redirect(int stream, ChildProcess::Output where, int capture, int nowhere) {
    if (where == ChildProcess::Output::capture) dup2(capture, stream);
    if (where == ChildProcess::Output::discard) dup2(nowhere, stream);
}

std::string cannotStart(const ChildProcess::Options& options, int error) {
    if (error == ENOENT && !options.package.empty()) {
        return options.program + " is not installed: it is in the Debian package " + options.package;
    }
    return "cannot start " + options.program + ": " + std::generic_category().message(error);
}

} // namespace

ChildProcess::ChildProcess(const Options& options) : program_(options.program) {
    std::vector<std::string> arguments = options.arguments;
    arguments.insert(arguments.begin(), options.program);
    std::vector<std::string> environment = mergedEnvironment(options);
    const std::vector<char*> argv = pointers(arguments);
    const std::vector<char*> envp = pointers(environment);

    Pipe capture = makePipe();
    Pipe failure = makePipe();
    const FileDescriptor nowhere(open("/dev/null", O_RDWR | O_CLOEXEC));
    if (!nowhere.isOpen()) fail("cannot open /dev/null", errno);
    const pid_t parent = getpid();

    id_ = fork();
    if (id_ < 0) fail("cannot fork", errno);
    if (id_ == 0) {
        setpgid(0, 0);
        sigset_t none;
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        if (getppid() != parent) _exit(127); // the test was gone before the line above
        dup2(nowhere.get(), STDIN_FILENO);
        redirect(STDOUT_FILENO, options.output, capture.writeEnd.get(), nowhere.get());
        redirect(STDERR_FILENO, options.errors, capture.writeEnd.get(), nowhere.get());
        execvpe(argv.front(), argv.data(), envp.data());
        const int error = errno;
        const ssize_t ignored = write(failure.writeEnd.get(), &error, sizeof error);
        _exit(ignored > 0 ? 127 : 126);
    }

    setpgid(id_, id_); // the child does it as well: whoever comes first
    failure.writeEnd.reset();
    int error = 0;
    if (read(failure.readEnd.get(), &error, sizeof error) == sizeof error) {
        waitpid(id_, nullptr, 0);
        throw std::runtime_error(cannotStart(options, error));
    }
    exitDescriptor_ = FileDescriptor(static_cast<int>(syscall(SYS_pidfd_open, id_, 0)));
    if (!exitDescriptor_.isOpen()) {
        const int reason = errno;
        signalGroup(SIGKILL);
        waitpid(id_, nullptr, 0);
        fail("cannot watch " + program_, reason);
    }
    if (options.output == Output::capture || options.errors == Output::capture) {
        output_ = std::move(capture.readEnd);
    }
}

ChildProcess::~ChildProcess() { terminate(); }

void ChildProcess::kill(int signal) {
    if (!status_) ::kill(id_, signal);
}

void ChildProcess::signalGroup(int signal) const { ::kill(-id_, signal); }

void ChildProcess::terminate(std::chrono::milliseconds patience) {
    if (status_) return;
    signalGroup(SIGTERM);
    // Called from destructors: the code under test must not run meanwhile.
    pollReadable(exitDescriptor_.get(), Deadline(patience));
    // Not reaped yet, so the number still belongs to this group: end also what it may have left behind.
    signalGroup(SIGKILL);
    pollReadable(exitDescriptor_.get(), Deadline(std::chrono::seconds(10)));
    waitForExit(std::chrono::milliseconds(0));
}

std::optional<int> ChildProcess::waitForExit(std::chrono::milliseconds timeout) {
    const Deadline deadline(timeout);
    while (!status_) {
        int status = 0;
        if (waitpid(id_, &status, WNOHANG) == id_) {
            status_ = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
        } else if (!waitReadable(exitDescriptor_.get(), deadline) && deadline.hasPassed()) {
            break;
        }
    }
    return status_;
}

bool ChildProcess::readMore(const Deadline& deadline) {
    if (!output_.isOpen()) return false;
    while (!waitReadable(output_.get(), deadline)) {
        if (deadline.hasPassed()) return false;
    }
    std::array<char, 4096> buffer{};
    const ssize_t count = read(output_.get(), buffer.data(), buffer.size());
    if (count <= 0) {
        output_.reset();
        return false;
    }
    unread_.append(buffer.data(), static_cast<std::size_t>(count));
    return true;
}

std::optional<std::string> ChildProcess::waitForLine(std::string_view text,
                                                     std::chrono::milliseconds timeout) {
    const Deadline deadline(timeout);
    do {
        for (std::size_t end = unread_.find('\n'); end != std::string::npos; end = unread_.find('\n')) {
            std::string line = unread_.substr(0, end);
            unread_.erase(0, end + 1);
            if (line.find(text) != std::string::npos) return line;
        }
    } while (readMore(deadline));
    return std::nullopt;
}

std::string ChildProcess::readAll(std::chrono::milliseconds timeout) {
    const Deadline deadline(timeout);
    while (readMore(deadline)) {
    }
    return std::exchange(unread_, {});
}

std::string runProgram(ChildProcess::Options options, std::chrono::milliseconds timeout) {
    options.output = ChildProcess::Output::capture;
    options.errors = ChildProcess::Output::capture;
    const Deadline deadline(timeout);
    ChildProcess child(options);
    std::string output = child.readAll(timeout);
    const auto status = child.waitForExit(std::chrono::milliseconds(deadline.millisecondsLeft()));
    if (!status) throw std::runtime_error(options.program + " did not end in time");
    if (*status != 0) {
        throw std::runtime_error(options.program + " failed (" + std::to_string(*status) + "): " + output);
    }
    return output;
}

} // namespace hopsel::session
