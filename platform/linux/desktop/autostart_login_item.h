// Starting with the session: an entry in the autostart folder, which every usual desktop reads.
//
// Owned by the application model. Nothing is remembered between calls. The entry belongs to the user as much
// as to us: only what we wrote ourselves is removed, in anything else only the switch is turned.
#pragma once

#include "core/platform/login_item.h"

#include <filesystem>
#include <string>

namespace hopsel {

class AutostartLoginItem final : public LoginItemControlling {
  public:
    /// "autostart" where the user's configuration lies, and the program that runs.
    AutostartLoginItem();
    AutostartLoginItem(std::filesystem::path folder, std::filesystem::path program);

    /// `unavailable` when the entry could not be written; an entry whose program is gone is `disabled`.
    LoginItemStatus status() const override;
    /// Throws `std::system_error` with the platform's own text.
    void setEnabled(bool on) override;

  private:
    bool canBeWritten() const;
    void enable();
    void disable();
    std::string ownText() const;

    std::filesystem::path folder_;
    std::filesystem::path entry_;
    std::filesystem::path program_;
};

} // namespace hopsel
