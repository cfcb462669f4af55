#include "platform/linux/keys_helper/session/helper_link.h"

#include "platform/linux/keys_helper/session/helper_child.h"
#include "platform/linux/keys_helper/session/helper_words.h"

#include <utility>
#include <variant>

namespace hopsel {

bool HelperLink::isOffered() const {
    return isReady_ || (failure_.empty() &&
                        (places_.hasService() || (!places_.program.empty() && places_.canReadDevices())));
}

bool HelperLink::open() {
    if (!socket_) {
        if (std::exchange(hasWorked_, false)) failure_.clear(); // it may well come again
        const int descriptor = connect();
        if (descriptor < 0) return false;
        socket_ = std::make_unique<HelperSocket>(
            descriptor, [this](const auto& messages) { take(messages); }, [this] { closed(); });
        send(to_helper::Hello{});
    }
    return isReady_ || failure_.empty();
}

void HelperLink::close() {
    socket_.reset();
    isReady_ = false;
}

int HelperLink::connect() {
    const bool hasService = places_.hasService();
    const int service = hasService ? HelperSocket::connectTo(places_.socket) : -1;
    isSilent_ = hasService && service < 0;
    if (service >= 0) return service;
    if (places_.program.empty()) {
        failure_ = hasService ? helper_words::doesNotAnswer() : helper_words::notInstalled();
        return -1;
    }
    if (!places_.canReadDevices()) {
        failure_ = hasService ? helper_words::doesNotAnswer() : helper_words::notEnabled();
        return -1;
    }
    const int child = helper_child::start(places_.program);
    if (child < 0) failure_ = helper_words::cannotStart(places_.program);
    return child;
}

void HelperLink::send(const to_helper::Message& message) {
    if (socket_) socket_->send(message);
}

void HelperLink::take(const std::vector<to_session::Message>& messages) {
    for (const to_session::Message& message : messages) {
        if (const auto* welcome = std::get_if<to_session::Welcome>(&message)) {
            if (welcome->version != helperProtocolVersion)
                return fail(helper_words::otherVersion(welcome->version));
        } else if (const auto* state = std::get_if<to_session::State>(&message)) {
            const bool isUseless = state->keyboards == 0 && state->unreadable > 0;
            isUseless ? fail(helper_words::unreadable(*state)) : greeted();
        } else if (const auto* trouble = std::get_if<to_session::Trouble>(&message)) {
            using Kind = to_session::Trouble::Kind;
            if (trouble->kind == Kind::inactive || trouble->kind == Kind::busy)
                fail(helper_words::of(*trouble));
        }
    }
    const auto tell = onMessages;
    if (tell) tell(messages);
}

void HelperLink::greeted() {
    if (std::exchange(isReady_, true)) return;
    failure_.clear();
    hasWorked_ = true;
}

// The socket stays: the helper says so when it is better, or closes it.
void HelperLink::fail(const std::string& reason) {
    const bool wasThere = isReady_ || failure_.empty();
    failure_ = reason;
    isReady_ = false;
    hasWorked_ = false;
    const auto tell = onLost;
    if (wasThere && tell) tell();
}

void HelperLink::closed() {
    const bool hasWorked = hasWorked_;
    const std::string reason = failure_;
    socket_.reset();
    fail(reason.empty() ? helper_words::gone() : reason);
    hasWorked_ = hasWorked;
}

} // namespace hopsel
