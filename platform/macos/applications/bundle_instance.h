// Only one copy of the program runs in a session: two would switch back and forth on every press.
//
// Held by the delegate for the life of the process. The system knows which applications run, so nothing has
// to be locked; a program that is in no bundle (a build tried from a terminal) counts as the only one.
#pragma once

#include <cstdint>
#include <optional>

namespace hopsel {

class BundleInstance {
  public:
    /// False when an application with our bundle identifier runs that was started earlier: of two that start
    /// at once, one stays.
    bool acquire() const { return !otherProcess(); }
    void release() const {}
    std::optional<std::int64_t> otherProcess() const;
    /// Asks it to come to the front. False if it is gone by now.
    bool activateOther() const;
};

} // namespace hopsel
