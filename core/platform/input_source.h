// The records of the input-source service: what a source is, what selecting it answered, how a switch went.
// Plain values.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace hopsel {

/// What a person should know before a rule relies on the source.
enum class SourceLimit {
    none,
    startsInLatin, ///< selecting it gives Latin letters until its own key is pressed; its settings say so
    startsInLatinByFile, ///< the same; no window changes it, only a file of its own
};

struct InputSourceInfo {
    std::string id;                     ///< the platform's identifier; rules store it
    std::string name;                   ///< localized; the identifier where the platform has no name
    std::string type;                   ///< the platform's kind of source, may be empty
    std::vector<std::string> languages; ///< language codes, most relevant first
    bool isSelectCapable = false;       ///< false: listed, but the platform cannot make it current
    SourceLimit limit = SourceLimit::none;
    friend bool operator==(const InputSourceInfo&, const InputSourceInfo&) = default;
};

namespace select_result {
/// The platform accepted the request.
struct Selected {
    friend bool operator==(const Selected&, const Selected&) = default;
};
/// No enabled source has the identifier.
struct NotFound {
    friend bool operator==(const NotFound&, const NotFound&) = default;
};
/// The platform refused, with its own status code.
struct Failed {
    std::int32_t code;
    friend bool operator==(const Failed&, const Failed&) = default;
};
} // namespace select_result

using SelectResult = std::variant<select_result::Selected, select_result::NotFound, select_result::Failed>;

struct SwitchOutcome {
    std::string requested;
    SelectResult result;
    bool verified = false; ///< the platform reported the source as current within the verification time
    double latencyMs = 0;  ///< from the start of the switch until verification ended or the selection failed
    friend bool operator==(const SwitchOutcome&, const SwitchOutcome&) = default;
};

} // namespace hopsel
