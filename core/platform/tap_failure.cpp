#include "core/platform/tap_failure.h"

namespace hopsel {

namespace {
constexpr std::string_view category = "ActiveTap";
}

void TapFailureLog::failed(const std::string& reason) {
    if (lastFailureReason_ == reason) return;
    lastFailureReason_ = reason;
    log_.write(Log::Level::error, category, "ActiveTap start failed: " + reason);
}

void TapFailureLog::started() {
    if (lastFailureReason_) log_.write(Log::Level::info, category, "ActiveTap started after a failure");
    lastFailureReason_.reset();
}

} // namespace hopsel
