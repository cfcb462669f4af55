// The real helper as a child, or as the service manager starts it, and the session's end of its socket.
//
// A test owns them; the processes are ended with them. Waits are for a word to come, so that a busy machine
// only takes longer.
#pragma once

#include "platform/linux/keys_helper/protocol/helper_wire.h"

#include <array>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace hopsel {

class HelperPeer {
  public:
    /// To a service.
    explicit HelperPeer(const std::string& path);
    ~HelperPeer() { closeSocket(); }
    HelperPeer(const HelperPeer&) = delete;
    HelperPeer& operator=(const HelperPeer&) = delete;

    void send(const to_helper::Message& message) { sendBytes(helper_wire::encode(message)); }
    void sendBytes(helper_wire::Bytes packet) const;
    void declare(std::initializer_list<std::string_view> combinations);

    /// The next that it says; nothing if it has closed the socket.
    std::optional<to_session::Message> next();
    /// All that it says until this word, which is part of it; "closed" is one too.
    std::string until(std::string_view word);
    void answer(bool swallow) { send(to_helper::Answer{asked_, swallow}); }
    /// All questions from now on get this answer at once; none: they are left to the test.
    void answerAll(std::optional<bool> swallow) { answers_ = swallow; }

    void closeSocket();

  protected:
    explicit HelperPeer(int socket) : socket_(socket) {}

  private:
    int socket_ = -1;
    std::uint32_t asked_ = 0;
    std::optional<bool> answers_;
};

class HelperProcess : public HelperPeer {
  public:
    explicit HelperProcess(const std::vector<std::string>& options = {});
    ~HelperProcess();

    void kill(int signal) const;
    /// The exit code, or minus the signal that ended it.
    int waitForExit();

  private:
    HelperProcess(const std::vector<std::string>& options, std::array<int, 2> ends);

    pid_t id_;
};

class HelperService {
  public:
    /// Listens at the path.
    explicit HelperService(std::string path);
    ~HelperService();
    HelperService(const HelperService&) = delete;
    HelperService& operator=(const HelperService&) = delete;

    /// As the service manager does when somebody has connected.
    void start();
    int waitForExit();

  private:
    std::string path_;
    int listening_ = -1;
    pid_t id_ = -1;
};

} // namespace hopsel
