// A program that a test runs beside itself, and ends again.
//
// The child gets a process group of its own and dies with the test, however the test ends. Only what was
// started here is ever signalled. Waiting goes through waiting.h.
#pragma once

#include "session/file_descriptor.h"
#include "session/waiting.h"

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace hopsel::session {

class ChildProcess {
  public:
    enum class Output {
        inherit, ///< goes where the test's own goes
        discard,
        capture, ///< read with `waitForLine`; output and errors share one pipe if both are captured
    };

    struct Options {
        std::string program; ///< looked up in PATH
        std::vector<std::string> arguments;
        /// Changes to the test's own environment; nothing removes the variable.
        std::map<std::string, std::optional<std::string>> environment;
        /// The Debian package that has the program, named in the error when it is not installed.
        std::string package;
        Output output = Output::discard;
        Output errors = Output::inherit;
    };

    /// Throws `std::runtime_error` when the program cannot be started.
    explicit ChildProcess(const Options& options);
    /// SIGTERM to its group; SIGKILL when it has not ended after two seconds.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    pid_t id() const { return id_; }
    bool isRunning() { return !waitForExit(std::chrono::milliseconds(0)); }

    /// To the program itself, not to its group. Nothing happens once it has ended.
    void kill(int signal);
    /// What the destructor does. Returns when it has ended, and lets nothing else run meanwhile.
    void terminate(std::chrono::milliseconds patience = std::chrono::seconds(2));

    /// The exit code, or minus the signal that ended it; nothing while it runs.
    std::optional<int> waitForExit(std::chrono::milliseconds timeout);

    /// The next captured line that contains the text; lines before it are dropped. Nothing at the deadline or
    /// at the end of the output.
    std::optional<std::string> waitForLine(std::string_view text, std::chrono::milliseconds timeout);
    /// Everything captured from here until the program closes its output, or until the deadline.
    std::string readAll(std::chrono::milliseconds timeout);

  private:
    bool readMore(const Deadline& deadline);
    void signalGroup(int signal) const;

    std::string program_;
    pid_t id_ = -1;
    FileDescriptor exitDescriptor_; ///< a pidfd: readable once the process has ended
    FileDescriptor output_;
    std::string unread_;
    std::optional<int> status_;
};

/// Runs a program to its end and returns what it printed. Throws `std::runtime_error` when it cannot be
/// started, fails, or takes longer than `timeout`.
std::string runProgram(ChildProcess::Options options,
                       std::chrono::milliseconds timeout = std::chrono::seconds(10));

} // namespace hopsel::session
