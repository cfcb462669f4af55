// What the bug report says about the system. Read once at start.
#pragma once

#include <string>

namespace hopsel::system_facts {

/// The distribution and the kernel: "Debian GNU/Linux 12 (bookworm), Linux 6.1.0-9-amd64".
std::string systemVersion();
/// Of the machine: "x86_64".
std::string architecture();

} // namespace hopsel::system_facts
