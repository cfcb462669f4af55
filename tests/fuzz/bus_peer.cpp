#include "bus_peer.h"

#include <QDBusPendingCall>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace hopsel::fuzz {

namespace {

const QString connectionName = QStringLiteral("hopsel-fuzz");

void require(bool holds) {
    if (!holds) std::abort();
}

/// The fuzzer looks at its clock by a signal.
bool isInterrupted(ssize_t count) { return count < 0 && errno == EINTR; }

std::uint32_t word(const char* bytes) {
    std::uint32_t value = 0;
    std::memcpy(&value, bytes, sizeof value); // the toolkit writes in the machine's order, as we read
    return value;
}

} // namespace

BusPeer::BusPeer() : bus_(connectionName) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    // An abstract name: nothing is left behind, however the process ends.
    const std::string name = "hopsel-fuzz-" + std::to_string(getpid());
    std::memcpy(address.sun_path + 1, name.data(), name.size());
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    const int listening = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    require(bind(listening, reinterpret_cast<const sockaddr*>(&address), size) == 0);
    require(listen(listening, 1) == 0);
    bus_ = QDBusConnection::connectToPeer("unix:abstract=" + QString::fromStdString(name), connectionName);
    socket_ = accept(listening, nullptr, nullptr);
    require(socket_ >= 0);
    close(listening);
    greet();
}

BusPeer::~BusPeer() {
    QDBusConnection::disconnectFromPeer(connectionName);
    close(socket_);
}

QDBusMessage BusPeer::reply(const std::function<std::string(std::uint32_t call)>& bytes) {
    QDBusPendingCall call = bus_.asyncCall(QDBusMessage::createMethodCall({}, "/", "a.b", "C"));
    write(bytes(readCall()));
    call.waitForFinished();
    require(bus_.isConnected()); // or the message was none
    return call.reply();
}

void BusPeer::greet() const {
    char nothing = 1;
    read(&nothing, 1);
    for (std::string said = line(); said != "BEGIN"; said = line()) {
        const bool isUser = said.starts_with("AUTH EXTERNAL ");
        write(isUser ? "OK 0123456789abcdef0123456789abcdef\r\n" : "ERROR\r\n");
    }
}

std::string BusPeer::line() const {
    std::string line;
    while (!line.ends_with("\r\n")) {
        char next = 0;
        read(&next, 1);
        line += next;
    }
    return line.substr(0, line.size() - 2);
}

std::uint32_t BusPeer::readCall() const {
    std::array<char, 16> start{};
    read(start.data(), start.size());
    const std::size_t fields = (word(&start[12]) + 7U) / 8 * 8;
    std::string rest(fields + word(&start[4]), '\0');
    read(rest.data(), rest.size());
    return word(&start[8]);
}

void BusPeer::read(char* to, std::size_t size) const {
    while (size > 0) {
        const ssize_t count = ::read(socket_, to, size);
        if (isInterrupted(count)) continue;
        require(count > 0);
        to += count;
        size -= static_cast<std::size_t>(count);
    }
}

void BusPeer::write(const std::string& bytes) const {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count = ::write(socket_, bytes.data() + done, bytes.size() - done);
        if (isInterrupted(count)) continue;
        require(count > 0);
        done += static_cast<std::size_t>(count);
    }
}

} // namespace hopsel::fuzz
