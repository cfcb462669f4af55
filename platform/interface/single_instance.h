// Only one copy of the program runs in a session: two would switch back and forth on every press.
//
// Held by the delegate for the life of the process.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace hopsel {

class SingleInstance {
  public:
    SingleInstance() = default;
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;
    virtual ~SingleInstance() = default;

    /// False when another copy runs; true if this one is the one already.
    virtual bool acquire() = 0;
    virtual void release() = 0;
    /// The other copy's process, if it can be told.
    virtual std::optional<std::int64_t> otherProcess() const = 0;
    /// Asks it to come to the front. False if it cannot be reached. Waits for at most a second.
    virtual bool activateOther() const = 0;

    enum class Asked { answered, notRunning, noAnswer };
    /// Asks it for something, and waits some seconds for the reply.
    virtual Asked askOther(const std::string& /*request*/, std::string& /*reply*/) const {
        return Asked::notRunning;
    }
};

} // namespace hopsel
