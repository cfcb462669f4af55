// Is a password being typed? The system keeps one flag for all programs. Stateless.
#pragma once

#include "core/platform/secure_input.h"

namespace hopsel {

class SystemSecureInput final : public SecureInputProviding {
  public:
    bool isEnabled() const override;
};

} // namespace hopsel
