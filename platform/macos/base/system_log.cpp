#include "platform/macos/base/system_log.h"

#include "core/base/product.h"

#include <os/log.h>
#include <string>

namespace hopsel {

void SystemLog::write(Level level, std::string_view category, std::string_view message) {
    // The same names give the same object again, which the system keeps for as long as the process lives.
    os_log_t log =
        os_log_create(std::string(product::bundleIdentifier).c_str(), std::string(category).c_str());
    const os_log_type_t type = level == Level::error ? OS_LOG_TYPE_ERROR : OS_LOG_TYPE_INFO;
    os_log_with_type(log, type, "%{public}s", std::string(message).c_str());
}

} // namespace hopsel
