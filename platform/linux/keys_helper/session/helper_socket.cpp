#include "platform/linux/keys_helper/session/helper_socket.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <optional>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

namespace hopsel {

HelperSocket::HelperSocket(int descriptor, Handler onMessages, std::function<void()> onClosed)
    : descriptor_(descriptor),
      onMessages_(std::move(onMessages)),
      onClosed_(std::move(onClosed)),
      notifier_(std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read)) {
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { readAll(); });
}

HelperSocket::~HelperSocket() {
    notifier_->setEnabled(false);
    notifier_.release()->deleteLater(); // its signal may be the one that brought us here
    close(descriptor_);
}

int HelperSocket::connectTo(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) return -1;
    std::copy(path.begin(), path.end(), static_cast<char*>(address.sun_path));
    const int descriptor = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (descriptor < 0) return -1;
    // The service manager takes the connection at once, or its queue is full of others.
    if (connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
        return descriptor;
    close(descriptor);
    return -1;
}

void HelperSocket::send(const to_helper::Message& message) {
    const helper_wire::Packet packet = helper_wire::encode(message);
    // What cannot be sent is followed by the end of the socket, which is read.
    if (::send(descriptor_, packet.data(), packet.size(), MSG_DONTWAIT | MSG_NOSIGNAL) < 0)
        shutdown(descriptor_, SHUT_RDWR);
}

// A question whose answer is late is followed by word of that: all that is there is taken before any of it is
// looked at.
void HelperSocket::readAll() {
    std::vector<to_session::Message> messages;
    bool isOver = false;
    while (!isOver) {
        std::array<std::uint8_t, helper_wire::maxPacket> packet{};
        const auto size = recv(descriptor_, packet.data(), packet.size(), MSG_DONTWAIT | MSG_TRUNC);
        if (size < 0 && (errno == EAGAIN || errno == EINTR)) break;
        std::optional<to_session::Message> message;
        if (size > 0 && static_cast<std::size_t>(size) <= packet.size())
            message = helper_wire::decodeToSession(
                helper_wire::Bytes(packet).first(static_cast<std::size_t>(size)));
        isOver = !message;
        if (message) messages.push_back(*message);
    }
    const auto onClosed = isOver ? onClosed_ : nullptr;
    const auto onMessages = onMessages_; // they may destroy us
    const std::weak_ptr<bool> alive = alive_;
    if (!messages.empty()) onMessages(messages);
    if (onClosed && !alive.expired()) onClosed();
}

} // namespace hopsel
