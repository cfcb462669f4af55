// The session's end of the socket to the key helper. Nothing waits for the other side: a helper that does not
// take what it is told is as good as gone.
//
// Owned by the link.
#pragma once

#include "platform/linux/keys_helper/protocol/helper_wire.h"

#include <QSocketNotifier>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace hopsel {

class HelperSocket {
  public:
    /// All that has come, in its order. It may destroy the socket.
    using Handler = std::function<void(const std::vector<to_session::Message>&)>;

    /// Takes the descriptor over.
    HelperSocket(int descriptor, Handler onMessages, std::function<void()> onClosed);
    ~HelperSocket();
    HelperSocket(const HelperSocket&) = delete;
    HelperSocket& operator=(const HelperSocket&) = delete;

    /// To the service, as a descriptor; -1 if nobody listens there.
    static int connectTo(const std::string& path);

    void send(const to_helper::Message& message);

  private:
    void readAll();

    int descriptor_;
    Handler onMessages_;
    std::function<void()> onClosed_;
    std::unique_ptr<QSocketNotifier> notifier_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

} // namespace hopsel
