// The way to the key helper: opens it, greets, and says why there is none.
//
// Owned by the key session. While nothing is known yet it
// counts as there; what the helper says then decides. After a failure it is there only once it has greeted,
// so that somebody who tries again and again is not told every time that it might work.
#pragma once

#include "platform/linux/keys_helper/session/helper_places.h"
#include "platform/linux/keys_helper/session/helper_socket.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace hopsel {

class HelperLink {
  public:
    explicit HelperLink(HelperPlaces places) : places_(std::move(places)) {}

    /// Takes up an open one. False if there is no helper as far as is known; `failure` says why.
    bool open();
    void close();
    /// Things have changed: what failed may work now.
    void forgetFailure() {
        failure_.clear();
        isSilent_ = false;
    }
    /// Whether it would help to turn the service on.
    bool lacksService() const {
        return !isReady_ && !places_.canReadDevices() && (isSilent_ || !places_.hasService());
    }
    /// It has greeted, and reads keyboards.
    bool isReady() const { return isReady_; }
    /// In words for the user; empty while all is well.
    const std::string& failure() const { return failure_; }
    /// Whether there is a helper to be asked, without asking it.
    bool isOffered() const;

    void send(const to_helper::Message& message);

    /// All that it tells. It may close the link.
    std::function<void(const std::vector<to_session::Message>&)> onMessages;
    /// It was there as far as was known, and is not any more. It may close and open the link.
    std::function<void()> onLost;

  private:
    int connect();
    void take(const std::vector<to_session::Message>& messages);
    void greeted();
    void fail(const std::string& reason);
    void closed();

    HelperPlaces places_;
    std::unique_ptr<HelperSocket> socket_;
    std::string failure_;
    bool isReady_ = false;
    bool hasWorked_ = false; ///< since the last failure to greet
    bool isSilent_ = false;  ///< the service's socket is there, and nobody listens
};

} // namespace hopsel
