// The application in front, as the workspace reports it. Owned by start-up; needs the application object.
#pragma once

#include "core/platform/frontmost_app_observing.h"

#include <memory>

namespace hopsel {

class FrontmostAppObserver final : public FrontmostAppObserving {
  public:
    FrontmostAppObserver();
    ~FrontmostAppObserver() override;

    void start() override;

  private:
    void report(const std::optional<std::string>& bundleID) const;

    struct Registration;
    /// Absent while it does not observe. The notification's block holds it weakly.
    std::shared_ptr<Registration> registration_;
};

} // namespace hopsel
