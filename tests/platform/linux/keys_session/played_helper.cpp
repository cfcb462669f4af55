#include "platform/linux/keys_session/played_helper.h"

#include "support/qt_waiting.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

namespace hopsel {

PlayedHelper::PlayedHelper() : listening_(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string name = path();
    std::copy(name.begin(), name.end(), static_cast<char*>(address.sun_path));
    if (listening_ < 0 ||
        bind(listening_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        listen(listening_, 4) != 0)
        throw std::runtime_error("no socket at " + name);
}

PlayedHelper::~PlayedHelper() {
    hangUp();
    close(listening_);
}

bool PlayedHelper::isCalled() {
    hangUp();
    return test::runLoopUntil([this] {
               socket_ = accept4(listening_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
               return socket_ >= 0;
           }) &&
           next() == to_helper::Message(to_helper::Hello{});
}

void PlayedHelper::tell(const std::vector<to_session::Message>& messages) const {
    for (const auto& message : messages) {
        const auto packet = helper_wire::encode(message);
        if (send(socket_, packet.data(), packet.size(), MSG_NOSIGNAL) < 0)
            throw std::runtime_error("nobody listens");
    }
}

bool PlayedHelper::greet() {
    if (!isCalled()) return false;
    tell({to_session::Welcome{}, to_session::Held{}, to_session::State{.keyboards = 1}});
    return true;
}

std::optional<to_helper::Message> PlayedHelper::next() {
    std::array<std::uint8_t, helper_wire::maxPacket> packet{};
    ssize_t size = 0;
    const bool hasCome = test::runLoopUntil([&] {
        size = recv(socket_, packet.data(), packet.size(), 0);
        return size >= 0;
    });
    if (!hasCome) return std::nullopt;
    return helper_wire::decodeToHelper(helper_wire::Bytes(packet).first(static_cast<std::size_t>(size)));
}

std::optional<std::vector<std::string>> PlayedHelper::declared() {
    const auto message = next();
    const auto* declare = message ? std::get_if<to_helper::Declare>(&*message) : nullptr;
    if (declare == nullptr) return std::nullopt;
    std::vector<std::string> words;
    words.reserve(declare->declaration.combinations.size());
    for (const ShortcutKey& combination : declare->declaration.combinations)
        words.push_back(combination.storageString());
    return words;
}

void PlayedHelper::hangUp() {
    if (socket_ >= 0) close(std::exchange(socket_, -1));
}

} // namespace hopsel
