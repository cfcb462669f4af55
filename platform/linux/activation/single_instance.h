// Only one copy of the program runs in a session: two would switch back and forth on every press.
//
// Held by the delegate for the life of the process. A lock file in the user's runtime folder, one for each
// display; the lock of a process that was killed does not count.
#pragma once

#include <QLockFile>
#include <QString>
#include <optional>

namespace hopsel {

class SingleInstance {
  public:
    SingleInstance();

    /// False when another copy holds the lock; true if we hold it already. A folder in which no lock can be
    /// made does not keep us from running.
    bool acquire();
    void release() { lock_.unlock(); }
    /// The process that holds the lock, if it can be told.
    std::optional<qint64> otherProcess() const;
    /// Asks it to come to the front. False if it cannot be reached. Waits for at most a second.
    bool activateOther() const;

  private:
    QLockFile lock_;
};

} // namespace hopsel
