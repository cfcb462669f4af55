// The mark on every event that this program posts, by which its own sources know them again.
#pragma once

#include <cstdint>

namespace hopsel::synthetic_events {

/// Chosen at random once per process, on first use; between 1 and 2^63-1. Platforms without a user-data field
/// in their events recognise their own posts by other means.
std::int64_t marker();

} // namespace hopsel::synthetic_events
