// The seam of secure text entry: is a password being typed?
//
// Asked in the key path, so an implementation answers from memory, never waits and never throws; unknown
// is false.
#pragma once

#include <functional>

namespace hopsel {

/// What the platform can tell of password fields.
enum class SecureInputState {
    unavailable, ///< nothing
    off,         ///< little: the user has not switched on what programs would tell it through
    watching,
};

class SecureInputProviding {
  public:
    SecureInputProviding() = default;
    SecureInputProviding(const SecureInputProviding&) = delete;
    SecureInputProviding& operator=(const SecureInputProviding&) = delete;
    virtual ~SecureInputProviding() = default;

    virtual bool isEnabled() const = 0;
    virtual SecureInputState state() const { return SecureInputState::watching; }

    /// The state is another.
    std::function<void()> onStateChange;
};

/// For platforms and sessions that cannot tell.
class NoSecureInput final : public SecureInputProviding {
  public:
    bool isEnabled() const override { return false; }
    SecureInputState state() const override { return SecureInputState::unavailable; }
};

} // namespace hopsel
