#include "core/rules/json_writer.h"

#include <nlohmann/json.hpp>
#include <stdexcept>

namespace hopsel {
namespace {

using Json = nlohmann::json;

std::string scalar(const Json& value) {
    try {
        return value.dump();
    } catch (const Json::exception&) { // the one thing that can be wrong with a scalar
        throw std::invalid_argument("a text is not valid UTF-8");
    }
}

void append(std::string& out, const Json& value, std::size_t level) {
    if (!value.is_structured()) {
        out += scalar(value);
        return;
    }
    const bool isObject = value.is_object();
    if (value.empty()) {
        out += isObject ? "{}" : "[]";
        return;
    }
    const std::string indentation(2 * (level + 1), ' ');
    out += isObject ? '{' : '[';
    const char* separator = "\n";
    for (auto item = value.begin(); item != value.end();
         ++item) { // objects iterate in byte order of their names
        out += separator;
        separator = ",\n";
        out += indentation;
        if (isObject) out += scalar(item.key()) + " : ";
        append(out, *item, level + 1);
    }
    out += '\n';
    out.append(2 * level, ' ');
    out += isObject ? '}' : ']';
}

} // namespace

std::string writeJson(const nlohmann::json& document) {
    std::string out;
    append(out, document, 0);
    return out;
}

} // namespace hopsel
