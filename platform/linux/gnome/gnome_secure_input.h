// Secure text entry in a GNOME session under Wayland: the shell knows what the field with the focus is for.
//
// Shared with the engine, and made by the platform. What the extension tells is as of the last key, which is
// when it is asked; what programs tell of themselves counts beside it.
#pragma once

#include "core/platform/secure_input.h"
#include "platform/linux/gnome/gnome_extension.h"

#include <QObject>
#include <memory>

namespace hopsel {

class GnomeSecureInput final : public SecureInputProviding {
  public:
    GnomeSecureInput(std::shared_ptr<GnomeExtension> extension, std::shared_ptr<SecureInputProviding> fields);
    ~GnomeSecureInput() override { fields_->onStateChange = nullptr; }

    bool isEnabled() const override { return isPassword_ || fields_->isEnabled(); }
    SecureInputState state() const override;

  private:
    void tell() const;

    std::shared_ptr<GnomeExtension> extension_;
    std::shared_ptr<SecureInputProviding> fields_;
    bool isPassword_ = false;
    QObject context_; ///< what the extension tells ends with it
};

} // namespace hopsel
