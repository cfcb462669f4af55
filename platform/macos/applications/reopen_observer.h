// Tells when the user starts the program while it runs: from the Finder, the Launchpad or with "open".
//
// Owned by the platform; needs the application object. The system sends such a start to the running copy as
// an event; the toolkit has no signal for it.
#pragma once

#include <functional>
#include <memory>

namespace hopsel {

class ReopenObserver {
  public:
    explicit ReopenObserver(std::function<void()> onReopen);
    ~ReopenObserver();
    ReopenObserver(const ReopenObserver&) = delete;
    ReopenObserver& operator=(const ReopenObserver&) = delete;

  private:
    struct Registration;
    std::unique_ptr<Registration> registration_;
};

} // namespace hopsel
