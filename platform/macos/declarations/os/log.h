// The unified log.
#pragma once

#include <cstdint>

extern "C" {

using os_log_t = struct HopselOsLog*;

enum os_log_type_t : std::uint8_t {
    OS_LOG_TYPE_INFO = 0x01,
    OS_LOG_TYPE_ERROR = 0x10,
};

/// The same object for the same names; lasts as long as the process.
os_log_t os_log_create(const char* subsystem, const char* category);
void hopselOsLog(os_log_t log, os_log_type_t type, const char* format, ...);
}

#define os_log_with_type(log, type, ...) hopselOsLog(log, type, __VA_ARGS__)
