#include "platform/macos/system_events/system_secure_input.h"

#include <Carbon/Carbon.h>

namespace hopsel {

bool SystemSecureInput::isEnabled() const { return IsSecureEventInputEnabled() != 0; }

} // namespace hopsel
