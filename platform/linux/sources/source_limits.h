// What a person should know of a source before a rule relies on it: the seam between the catalog of the
// session, which adds it to what frameworks list, and who reads the settings of input methods.
#pragma once

#include "core/platform/input_source.h"

#include <functional>
#include <string>

namespace hopsel {

class SourceLimits {
  public:
    SourceLimits() = default;
    SourceLimits(const SourceLimits&) = delete;
    SourceLimits& operator=(const SourceLimits&) = delete;
    virtual ~SourceLimits() = default;

    /// As it is set now. `id` as frameworks name their sources.
    virtual SourceLimit limitOf(const std::string& id) = 0;
    // See the catalog.
    virtual bool canSetStart(const std::string& /*id*/) const { return false; }
    virtual void setStartsInOwnScript(const std::string& /*id*/, bool /*inOwnScript*/) {}
    /// Looks whether what was told last is still so, where nothing tells of changes.
    virtual void check() {}
    /// There is something that nothing tells of.
    virtual bool needsCheck() const { return false; }

    /// What was told last is so no more. Called from the event loop or by `check`.
    std::function<void()> onChanged;
};

} // namespace hopsel
