// What the system's word for the state of a login item means to us. Pure.
#pragma once

#include "core/platform/login_item.h"

namespace hopsel {

/// `serviceStatus`: the value of SMAppService's `status`. "Not found" and everything unknown is unavailable.
LoginItemStatus loginItemStatus(long serviceStatus);

} // namespace hopsel
