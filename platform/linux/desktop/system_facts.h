// What a report says about the system it was written on. Stateless; asks the system at each call.
#pragma once

#include <string>

namespace hopsel::system_facts {

/// The distribution and the kernel, as in "Debian GNU/Linux 12 (bookworm), Linux 6.1.0".
std::string version();

/// The machine's, as in "x86_64".
std::string architecture();

} // namespace hopsel::system_facts
