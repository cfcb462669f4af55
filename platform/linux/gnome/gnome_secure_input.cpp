#include "platform/linux/gnome/gnome_secure_input.h"

#include <QDBusMessage>
#include <utility>

namespace hopsel {

GnomeSecureInput::GnomeSecureInput(std::shared_ptr<GnomeExtension> extension,
                                   std::shared_ptr<SecureInputProviding> fields)
    : extension_(std::move(extension)), fields_(std::move(fields)) {
    fields_->onStateChange = [this] { tell(); };
    extension_->observe(&context_, [this] {
        isPassword_ = false;
        tell();
    });
    extension_->listen("Password", "b", &context_, [this](const QDBusMessage& signal) {
        isPassword_ = signal.arguments().constFirst().toBool();
    });
}

SecureInputState GnomeSecureInput::state() const {
    return extension_->can("passwords") ? SecureInputState::watching : fields_->state();
}

void GnomeSecureInput::tell() const {
    if (onStateChange) onStateChange();
}

} // namespace hopsel
