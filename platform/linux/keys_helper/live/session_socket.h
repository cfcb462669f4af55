// The helper's end of the socket to a session. Never waits: a session that does not read what it is told is
// gone.
//
// Owned by the helper.
#pragma once

#include "platform/linux/keys_helper/live/descriptor.h"
#include "platform/linux/keys_helper/protocol/helper_wire.h"

#include <optional>
#include <sys/types.h>
#include <utility>

namespace hopsel {

class SessionSocket {
  public:
    explicit SessionSocket(Descriptor socket);

    int descriptor() const { return socket_.get(); }
    /// Who is at the other end, as the kernel says; none if it is no socket.
    std::optional<uid_t> user() const;

    void send(const to_session::Message& message);
    /// None: it has said nothing more for now, or is over.
    std::optional<to_helper::Message> receive();
    /// The session has gone, does not listen, or said what no session says.
    bool isOver() const { return isOver_; }
    Descriptor release() { return std::move(socket_); }
    void end() { isOver_ = true; }

  private:
    Descriptor socket_;
    bool isOver_ = false;
};

} // namespace hopsel
