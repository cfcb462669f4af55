// The settings document as JSON text: reading it strictly, writing it always the same way.
//
// Reading is all or nothing: one bad member fails the document. Text is read through nlohmann-json; the
// written form (sorted members, two blanks of indentation, " : ", UTF-8 as it stands) is our own. Stateless.
#pragma once

#include "core/rules/rule.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace hopsel::config_json {

/// The text is no settings document. `what()` says where and why; `member()` names the member at fault, if
/// any.
class DecodingError : public std::runtime_error {
  public:
    DecodingError(std::string member, const std::string& description)
        : std::runtime_error(description), member_(std::move(member)) {}
    const std::string& member() const { return member_; }

  private:
    std::string member_;
};

/// The "schemaVersion" of a well-formed JSON object, whatever else it holds; nothing for any other text.
/// Builds no document, however large the text is.
std::optional<std::int64_t> probeSchemaVersion(std::string_view text);

/// Throws `DecodingError`. Unknown members are ignored; of members with one name the last one counts. A text
/// of absurd depth or size is refused before a document is built from it.
Config decode(std::string_view text);

/// Throws `std::invalid_argument` if a string is not UTF-8.
std::string encode(const Config& config);

} // namespace hopsel::config_json
