// The one copy of a Linux session, by a lock file in the user's runtime folder, one for each display.
//
// Held by the delegate for the life of the process. The lock of a process that was killed does not count.
#pragma once

#include "platform/interface/single_instance.h"

#include <QLockFile>

namespace hopsel {

class LockFileInstance final : public SingleInstance {
  public:
    LockFileInstance();

    /// Also true in a folder in which no lock can be made, or where another user has made it: that does not
    /// keep us from running.
    bool acquire() override;
    void release() override { lock_.unlock(); }
    std::optional<std::int64_t> otherProcess() const override;
    bool activateOther() const override;
    Asked askOther(const std::string& request, std::string& reply) const override;

  private:
    bool isOurUsers() const;

    QLockFile lock_;
};

} // namespace hopsel
