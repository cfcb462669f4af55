// Secure text entry while the screen is locked: what is typed then is a password, whatever programs tell.
//
// Wraps what watches password fields; the platform tells it of the lock and hands it to the engine. Main
// thread.
#pragma once

#include "core/platform/secure_input.h"

#include <memory>

namespace hopsel {

class LockSecureInput final : public SecureInputProviding {
  public:
    explicit LockSecureInput(std::shared_ptr<SecureInputProviding> fields) : fields_(std::move(fields)) {
        fields_->onStateChange = [this] {
            if (onStateChange) onStateChange();
        };
    }
    ~LockSecureInput() override { fields_->onStateChange = nullptr; }

    void setLocked(bool locked) { isLocked_ = locked; }

    bool isEnabled() const override { return isLocked_ || fields_->isEnabled(); }
    SecureInputState state() const override { return fields_->state(); }

  private:
    std::shared_ptr<SecureInputProviding> fields_;
    bool isLocked_ = false;
};

} // namespace hopsel
