// Counts what the program that links this allocates with new: it replaces the operators.
#pragma once

#include <cstddef>

namespace hopsel::bench {

/// Since the start of the process, all threads together; exact while only one of them allocates.
std::size_t allocations();

} // namespace hopsel::bench
