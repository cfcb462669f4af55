// What the system's word for the state of a login item means to us. Pure.
#pragma once

#include "core/platform/login_item.h"

namespace hopsel {

/// `serviceStatus`: the value of SMAppService's `status`. Everything unknown is unavailable, and so is "not
/// found" once registering was tried; before the first registration some versions answer it for any program.
LoginItemStatus loginItemStatus(long serviceStatus, bool wasTried);

} // namespace hopsel
