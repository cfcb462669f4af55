#include "platform/linux/keys_helper/live/session_socket.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <sys/socket.h>

namespace hopsel {

SessionSocket::SessionSocket(Descriptor socket) : socket_(std::move(socket)) {
    fcntl(socket_.get(), F_SETFD, FD_CLOEXEC);
}

std::optional<uid_t> SessionSocket::user() const {
    ucred peer{};
    socklen_t size = sizeof peer;
    if (getsockopt(socket_.get(), SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0) return std::nullopt;
    return peer.uid;
}

void SessionSocket::send(const to_session::Message& message) {
    if (isOver_) return;
    const helper_wire::Packet packet = helper_wire::encode(message);
    const auto sent = ::send(socket_.get(), packet.data(), packet.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    isOver_ = sent < 0;
}

std::optional<to_helper::Message> SessionSocket::receive() {
    if (isOver_) return std::nullopt;
    std::array<std::uint8_t, helper_wire::maxPacket> packet{};
    const auto size = recv(socket_.get(), packet.data(), packet.size(), MSG_DONTWAIT | MSG_TRUNC);
    if (size < 0 && (errno == EAGAIN || errno == EINTR)) return std::nullopt;
    std::optional<to_helper::Message> message;
    if (size > 0 && static_cast<std::size_t>(size) <= packet.size())
        message =
            helper_wire::decodeToHelper(helper_wire::Bytes(packet).first(static_cast<std::size_t>(size)));
    isOver_ = !message;
    return message;
}

} // namespace hopsel
