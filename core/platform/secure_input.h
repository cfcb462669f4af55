// The seam of secure text entry: is a password being typed?
//
// Asked in the key path, so an implementation answers from memory, never waits and never throws; unknown
// is false.
#pragma once

namespace hopsel {

class SecureInputProviding {
  public:
    SecureInputProviding() = default;
    SecureInputProviding(const SecureInputProviding&) = delete;
    SecureInputProviding& operator=(const SecureInputProviding&) = delete;
    virtual ~SecureInputProviding() = default;

    virtual bool isEnabled() const = 0;
};

/// For platforms and sessions that cannot tell.
class NoSecureInput final : public SecureInputProviding {
  public:
    bool isEnabled() const override { return false; }
};

} // namespace hopsel
