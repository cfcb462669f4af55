// A first look at a JSON text before anything is built from it: is it well formed, how deep and how big would
// the document be, and which settings version does it claim to have?
//
// The text comes from outside and may be anything. Scanning takes time in proportion to it, one bit of memory
// for each level of nesting, and the longest single string; no document. Stateless.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

namespace hopsel::json_scan {

struct Limits {
    std::size_t depth = std::numeric_limits<std::size_t>::max();
    std::size_t values = std::numeric_limits<std::size_t>::max();
};

enum class Verdict : std::uint8_t { wellFormed, malformed, beyondLimits };

struct Result {
    Verdict verdict = Verdict::malformed;
    std::size_t errorPosition = 0; ///< bytes read when the text turned out to be malformed
    /// The last "schemaVersion" member of the outermost object, if that is an integer of 64 bits.
    std::optional<std::int64_t> schemaVersion;
};

/// Stops at the first error and as soon as a limit is passed.
Result scan(std::string_view text, const Limits& limits = {});

} // namespace hopsel::json_scan
