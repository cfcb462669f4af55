// What the observers of the application in front have in common on Linux: they also tell when the focus moves
// between windows of one application, as some input methods keep a source for each.
#pragma once

#include "core/platform/frontmost_app_observing.h"

#include <functional>
#include <optional>
#include <string>

namespace hopsel {

class WindowObserver : public FrontmostAppObserving {
  public:
    /// Another window may be the active one, of the same application or of another. Comes after `onChange`.
    std::function<void()> onWindowChange;
    /// Nothing is told, where something could be after another `start`.
    virtual bool isLost() const = 0;

  protected:
    /// Tells of an application that is another than the last one told.
    void report(const std::optional<std::string>& identifier) {
        if (hasReported_ && identifier == reported_) return;
        hasReported_ = true;
        reported_ = identifier;
        if (onChange) onChange(identifier);
    }

  private:
    bool hasReported_ = false;
    std::optional<std::string> reported_;
};

} // namespace hopsel
