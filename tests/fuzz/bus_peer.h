// The other end of the toolkit's connection to a bus, which answers each call with the bytes it is given.
//
// The toolkit makes messages that have been sent of nothing but bytes that came over a connection; so there
// is one, within the process. Owned by the target, for all of its runs. A fault of its own ends the process.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <cstdint>
#include <functional>
#include <string>

namespace hopsel::fuzz {

class BusPeer {
  public:
    BusPeer();
    ~BusPeer();
    BusPeer(const BusPeer&) = delete;
    BusPeer& operator=(const BusPeer&) = delete;

    /// What the toolkit makes of a reply; `bytes` is asked for it with the number of the call.
    QDBusMessage reply(const std::function<std::string(std::uint32_t call)>& bytes);

  private:
    void greet() const;
    std::string line() const;
    std::uint32_t readCall() const;
    void read(char* to, std::size_t size) const;
    void write(const std::string& bytes) const;

    QDBusConnection bus_;
    int socket_ = -1;
};

} // namespace hopsel::fuzz
