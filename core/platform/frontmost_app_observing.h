// The seam that tells which application is in front.
//
// Owned by start-up, which sets the callback before `start`. Callbacks come on the main thread, none after
// the observer is gone.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace hopsel {

class FrontmostAppObserving {
  public:
    FrontmostAppObserving() = default;
    FrontmostAppObserving(const FrontmostAppObserving&) = delete;
    FrontmostAppObserving& operator=(const FrontmostAppObserving&) = delete;
    virtual ~FrontmostAppObserving() = default;

    /// Reports at once what is in front now. Does nothing while it observes already.
    virtual void start() = 0;

    /// The identifier of the application that came to the front (bundle identifier, desktop-file name, window
    /// class); absent when it has none.
    std::function<void(const std::optional<std::string>& bundleID)> onChange;
};

} // namespace hopsel
