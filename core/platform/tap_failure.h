// Why a source could not start, and the log of such failures, which says each reason once.
//
// The retry timer starts a failing source every two seconds; without the memory kept here the log would fill
// with one line. A `TapFailureLog` belongs to the filtering source that uses it.
#pragma once

#include "core/platform/log.h"

#include <optional>
#include <stdexcept>
#include <string>

namespace hopsel {

class TapFailure : public std::runtime_error {
  public:
    enum class Kind { accessibilityMissing, creationFailed };

    TapFailure(Kind kind, const std::string& reason) : std::runtime_error(reason), kind_(kind) {}
    Kind kind() const { return kind_; }

  private:
    Kind kind_;
};

class TapFailureLog {
  public:
    explicit TapFailureLog(Log& log) : log_(log) {}

    /// "ActiveTap start failed: <reason>" at error level, unless it is the reason that was logged last.
    void failed(const std::string& reason);
    /// "ActiveTap started after a failure" at info level, if a failure was logged before.
    void started();

  private:
    Log& log_;
    std::optional<std::string> lastFailureReason_;
};

} // namespace hopsel
