// The seam of starting with the user's session.
//
// Owned by the application model. The truth lies with the platform: whoever changed something asks again.
#pragma once

namespace hopsel {

enum class LoginItemStatus {
    enabled,
    disabled,
    requiresApproval, ///< registered, but the user has to allow it in the system's settings (macOS)
    unavailable,      ///< this system or session has no place to register
};

class LoginItemControlling {
  public:
    LoginItemControlling() = default;
    LoginItemControlling(const LoginItemControlling&) = delete;
    LoginItemControlling& operator=(const LoginItemControlling&) = delete;
    virtual ~LoginItemControlling() = default;

    virtual LoginItemStatus status() const = 0;
    /// Throws the platform's error (`std::runtime_error` or derived).
    virtual void setEnabled(bool on) = 0;
};

} // namespace hopsel
