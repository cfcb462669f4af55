#include "core/rules/config_json.h"

#include "core/base/overloaded.h"

#include "core/rules/json_representable.h"
#include "core/rules/json_scan.h"
#include "core/rules/json_writer.h"

#include <nlohmann/json.hpp>
#include <utility>

namespace hopsel::config_json {
namespace {

using Json = nlohmann::json;

// Far beyond any settings file that a person has, and small enough that a hostile one costs little.
constexpr json_scan::Limits documentLimits{64, 1'000'000};

constexpr const char* modifierTapKind = "modifier_tap";
constexpr const char* shortcutKind = "shortcut";
constexpr const char* toggleKind = "toggle_input_source";

[[noreturn]] void fail(const char* member, const std::string& description) {
    throw DecodingError(member, description);
}

[[noreturn]] void failType(const char* member, const char* expected) {
    fail(member, std::string("\"") + member + "\" is not " + expected);
}

const Json& required(const Json& object, const char* member) {
    const auto found = object.find(member);
    if (found == object.end()) fail(member, std::string("\"") + member + "\" is missing");
    return *found;
}

const Json& requiredObject(const Json& object, const char* member) {
    const Json& value = required(object, member);
    if (!value.is_object()) failType(member, "an object");
    return value;
}

const Json& requiredArray(const Json& object, const char* member) {
    const Json& value = required(object, member);
    if (!value.is_array()) failType(member, "an array");
    return value;
}

const std::string& requiredString(const Json& object, const char* member) {
    const Json& value = required(object, member);
    if (!value.is_string()) failType(member, "a string");
    const auto& text = value.get_ref<const std::string&>();
    if (text.find(json_representable::noCharacter) != std::string::npos) failType(member, "text");
    return text;
}

bool requiredBool(const Json& object, const char* member) {
    const Json& value = required(object, member);
    if (!value.is_boolean()) failType(member, "true or false");
    return value.get<bool>();
}

template <typename Integer>
Integer requiredInteger(const Json& object, const char* member) {
    const Json& value = required(object, member);
    if (!value.is_number_integer()) failType(member, "an integer"); // 1.0 and 1e0 are none
    const bool fits = value.is_number_unsigned() ? std::in_range<Integer>(value.get<std::uint64_t>())
                                                 : std::in_range<Integer>(value.get<std::int64_t>());
    if (!fits) fail(member, std::string("\"") + member + "\" is out of range");
    return value.get<Integer>();
}

ModifierKey modifierKey(const std::string& name, const char* member) {
    const auto key = modifierKeyFromRawValue(name);
    if (!key) fail(member, "unknown modifier key: " + name);
    return *key;
}

Trigger decodeTrigger(const Json& object) {
    static_assert(std::variant_size_v<Trigger> == 2, "a new kind of trigger has to be read, too");
    const std::string& kind = requiredString(object, "type");
    if (kind == modifierTapKind)
        return trigger::ModifierTap{modifierKey(requiredString(object, "key"), "key")};
    if (kind != shortcutKind) fail("type", "unknown trigger type: " + kind);

    ShortcutKey key;
    key.keyCode = requiredInteger<std::uint16_t>(object, "keyCode");
    for (const Json& name : requiredArray(object, "modifiers")) {
        if (!name.is_string()) failType("modifiers", "an array of strings");
        key.modifiers.insert(modifierKey(name.get_ref<const std::string&>(), "modifiers"));
    }
    return trigger::Shortcut{key};
}

InputSourceRef decodeSource(const Json& object) {
    return {requiredString(object, "sourceId"), requiredString(object, "displayName")};
}

Action decodeAction(const Json& object) {
    const std::string& kind = requiredString(object, "type");
    if (kind != toggleKind) fail("type", "unknown action type: " + kind);
    return action::Toggle{decodeSource(requiredObject(object, "sourceA")),
                          decodeSource(requiredObject(object, "sourceB"))};
}

Rule decodeRule(const Json& object) {
    if (!object.is_object()) failType("rules", "an array of objects");
    return {requiredString(object, "id"), requiredBool(object, "enabled"),
            decodeTrigger(requiredObject(object, "trigger")), decodeAction(requiredObject(object, "action"))};
}

/// Makes the text one that the parser takes, if what is wrong is only what JSON allows and no program holds.
json_scan::Result scanForParser(std::string& text, const json_scan::Limits& limits = {}) {
    const json_scan::Result result = json_scan::scan(text, limits);
    if (result.verdict != json_scan::Verdict::malformed) return result;
    text = json_representable::replacing(text);
    return json_scan::scan(text, limits);
}

Json encodeTrigger(const Trigger& trigger) {
    return std::visit(Overloaded{[](const trigger::ModifierTap& tap) -> Json {
                                     return {{"type", modifierTapKind}, {"key", rawValue(tap.key)}};
                                 },
                                 [](const trigger::Shortcut& shortcut) -> Json {
                                     return {{"type", shortcutKind},
                                             {"keyCode", shortcut.key.keyCode},
                                             {"modifiers", sortedNames(shortcut.key.modifiers)}};
                                 }},
                      trigger);
}

Json encodeSource(const InputSourceRef& source) {
    return {{"sourceId", source.sourceId}, {"displayName", source.displayName}};
}

Json encodeAction(const Action& action) {
    const auto& toggle = std::get<action::Toggle>(action);
    return {{"type", toggleKind},
            {"sourceA", encodeSource(toggle.sourceA)},
            {"sourceB", encodeSource(toggle.sourceB)}};
}

} // namespace

std::optional<std::int64_t> probeSchemaVersion(std::string_view text) {
    std::string readable(text);
    const json_scan::Result result = scanForParser(readable);
    return result.verdict == json_scan::Verdict::wellFormed ? result.schemaVersion : std::nullopt;
}

Config decode(std::string_view written) {
    std::string text(written);
    const json_scan::Result scanned = scanForParser(text, documentLimits);
    if (scanned.verdict == json_scan::Verdict::malformed) {
        fail("", "malformed JSON near byte " + std::to_string(scanned.errorPosition));
    }
    if (scanned.verdict == json_scan::Verdict::beyondLimits) fail("", "too deep or too many values");

    const Json document = Json::parse(text);
    if (!document.is_object()) fail("", "the document is not an object");
    Config config;
    config.schemaVersion = requiredInteger<std::int64_t>(document, "schemaVersion");
    for (const Json& rule : requiredArray(document, "rules")) config.rules.push_back(decodeRule(rule));
    return config;
}

std::string encode(const Config& config) {
    Json rules = Json::array();
    for (const Rule& rule : config.rules) {
        rules.push_back({{"id", rule.id},
                         {"enabled", rule.enabled},
                         {"trigger", encodeTrigger(rule.trigger)},
                         {"action", encodeAction(rule.action)}});
    }
    return writeJson({{"schemaVersion", config.schemaVersion}, {"rules", std::move(rules)}});
}

} // namespace hopsel::config_json
