// Fields of a settings file in the text form of protocol buffers, as far as flat reading goes: names and
// scalar values in their order, whatever block they are in. Pure.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace hopsel {

struct TextProtoField {
    std::string name;
    std::string value; ///< without quotation marks
    friend bool operator==(const TextProtoField&, const TextProtoField&) = default;
};

/// Takes anything; what is no field is passed over.
std::vector<TextProtoField> textProtoFields(std::string_view text);

} // namespace hopsel
