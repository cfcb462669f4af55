// The one copy on a Mac. The system knows which applications run, so nothing has to be locked.
//
// Held by the delegate for the life of the process. A program that is in no bundle (a build tried from a
// terminal) counts as the only one.
#pragma once

#include "platform/interface/single_instance.h"

namespace hopsel {

class BundleInstance final : public SingleInstance {
  public:
    /// False when an application with our bundle identifier runs that was started earlier: of two that start
    /// at once, one stays.
    bool acquire() override { return !otherProcess(); }
    void release() override {}
    std::optional<std::int64_t> otherProcess() const override;
    bool activateOther() const override;
};

} // namespace hopsel
