// Starting with the user's session, by the system's own register of login items. Owned by the application
// model.
#pragma once

#include "core/platform/login_item.h"

namespace hopsel {

class SMAppLoginItem final : public LoginItemControlling {
  public:
    LoginItemStatus status() const override;
    /// Throws `std::runtime_error` with the system's own text.
    void setEnabled(bool on) override;

  private:
    bool wasTried_ = false;
};

} // namespace hopsel
