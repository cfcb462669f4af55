#include "platform/linux/keys_helper/helper_process.h"

#include "platform/linux/keys_helper/key_words.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace hopsel {

namespace {

/// Nothing takes as long as this unless it is broken.
constexpr int patience = 30'000;
constexpr int childDescriptor = 3;

sockaddr_un addressOf(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::copy(path.begin(), path.end(), static_cast<char*>(address.sun_path));
    return address;
}

std::array<int, 2> connectedSockets() {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0)
        throw std::runtime_error("socketpair");
    return ends;
}

/// With the descriptor as its only one beside the three. `prepare` is called in the new process.
pid_t startHelper(std::vector<std::string> words, int descriptor, void (*prepare)()) {
    words.insert(words.begin(), HOPSEL_KEYS);
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    const pid_t id = fork();
    if (id != 0) return id;
    // It hides its memory from other processes, and so from the search for leaks too.
    setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
    if (descriptor == childDescriptor)
        fcntl(descriptor, F_SETFD, 0);
    else
        dup2(descriptor, childDescriptor);
    prepare();
    execv(HOPSEL_KEYS, pointers.data());
    _exit(127);
}

int exitOf(pid_t id) {
    int status = 0;
    waitpid(id, &status, 0); // the test's own time limit watches over it
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

void end(pid_t id) {
    if (id < 0) return;
    ::kill(id, SIGKILL);
    waitpid(id, nullptr, 0);
}

} // namespace

HelperPeer::HelperPeer(const std::string& path) : socket_(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0)) {
    const sockaddr_un address = addressOf(path);
    if (socket_ < 0 || connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        throw std::runtime_error("nobody listens at " + path);
}

void HelperPeer::sendBytes(helper_wire::Bytes packet) const {
    ::send(socket_, packet.data(), packet.size(), MSG_NOSIGNAL);
}

void HelperPeer::declare(std::initializer_list<std::string_view> combinations) {
    KeyDeclaration declaration;
    for (const std::string_view text : combinations)
        declaration.combinations.push_back(ShortcutKey::fromStorageString(text).value());
    send(to_helper::Declare{declaration});
}

std::optional<to_session::Message> HelperPeer::next() {
    pollfd readable{socket_, POLLIN, 0};
    if (poll(&readable, 1, patience) != 1) throw std::runtime_error("the helper says nothing");
    std::array<std::uint8_t, helper_wire::maxPacket> packet{};
    const auto size = recv(socket_, packet.data(), packet.size(), 0);
    if (size <= 0) return std::nullopt;
    const auto message =
        helper_wire::decodeToSession(helper_wire::Bytes(packet).first(static_cast<std::size_t>(size)));
    if (!message) throw std::runtime_error("the helper says what is no message");
    if (const auto* ask = std::get_if<to_session::Ask>(&*message)) {
        asked_ = ask->id;
        if (answers_) answer(*answers_);
    }
    return message;
}

std::string HelperPeer::until(std::string_view word) {
    std::string said;
    while (true) {
        std::string last;
        try {
            const auto message = next();
            last = message ? key_words::of(*message) : "closed";
        } catch (const std::runtime_error& failure) {
            return said + " [" + failure.what() + "]";
        }
        said += (said.empty() ? "" : " ") + last;
        if (last == word || last == "closed") return said;
    }
}

void HelperPeer::closeSocket() {
    if (socket_ >= 0) close(std::exchange(socket_, -1));
}

HelperProcess::HelperProcess(const std::vector<std::string>& options)
    : HelperProcess(options, connectedSockets()) {}

HelperProcess::HelperProcess(const std::vector<std::string>& options, std::array<int, 2> ends)
    : HelperPeer(ends[0]) {
    std::vector<std::string> words{"--session", std::to_string(childDescriptor)};
    words.insert(words.end(), options.begin(), options.end());
    id_ = startHelper(std::move(words), ends[1], [] {});
    close(ends[1]);
}

HelperProcess::~HelperProcess() {
    closeSocket();
    end(id_);
}

void HelperProcess::kill(int signal) const { ::kill(id_, signal); }

int HelperProcess::waitForExit() { return exitOf(std::exchange(id_, -1)); }

HelperService::HelperService(std::string path)
    : path_(std::move(path)), listening_(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0)) {
    const sockaddr_un address = addressOf(path_);
    if (listening_ < 0 ||
        bind(listening_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        listen(listening_, 8) != 0)
        throw std::runtime_error("no socket at " + path_);
}

HelperService::~HelperService() {
    end(id_);
    close(listening_);
    unlink(path_.c_str());
}

void HelperService::start() {
    end(std::exchange(id_, -1));
    id_ = startHelper({}, listening_, [] {
        setenv("LISTEN_PID", std::to_string(getpid()).c_str(), 1);
        setenv("LISTEN_FDS", "1", 1);
    });
}

int HelperService::waitForExit() { return exitOf(std::exchange(id_, -1)); }

} // namespace hopsel
