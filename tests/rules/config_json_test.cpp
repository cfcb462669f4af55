#include "core/rules/config_json.h"

#include "rules/rule_samples.h"

#include <gtest/gtest.h>
#include <optional>
#include <utility>

namespace hopsel {
namespace {

using config_json::decode;
using config_json::DecodingError;
using config_json::encode;
using config_json::probeSchemaVersion;
using samples::twoRules;
using samples::twoRulesWith;

TEST(SettingsDocument, is_written_in_exactly_one_way) {
    Rule keys =
        samples::shortcutRule("keys", {49, {ModifierKey::rightShift, ModifierKey::leftCommand}}, false);
    std::get<action::Toggle>(keys.action).sourceB = {"두벌식", "\"/\\\x01\t\x7f"};
    const Config config{2, {keys, samples::tapRule("tap")}};
    const std::string text = R"({
  "rules" : [
    {
      "action" : {
        "sourceA" : {
          "displayName" : "ABC",
          "sourceId" : "com.apple.keylayout.ABC"
        },
        "sourceB" : {
          "displayName" : "\"/\\\u0001\t)"
                             "\x7f"
                             R"(",
          "sourceId" : "두벌식"
        },
        "type" : "toggle_input_source"
      },
      "enabled" : false,
      "id" : "keys",
      "trigger" : {
        "keyCode" : 49,
        "modifiers" : [
          "leftCommand",
          "rightShift"
        ],
        "type" : "shortcut"
      }
    },
    {
      "action" : {
        "sourceA" : {
          "displayName" : "ABC",
          "sourceId" : "com.apple.keylayout.ABC"
        },
        "sourceB" : {
          "displayName" : "Dvorak",
          "sourceId" : "com.apple.keylayout.Dvorak"
        },
        "type" : "toggle_input_source"
      },
      "enabled" : true,
      "id" : "tap",
      "trigger" : {
        "key" : "rightCommand",
        "type" : "modifier_tap"
      }
    }
  ],
  "schemaVersion" : 2
})";
    EXPECT_EQ(encode(config), text);
    EXPECT_EQ(decode(text), config);
    EXPECT_EQ(encode(Config::empty()), "{\n  \"rules\" : [],\n  \"schemaVersion\" : 1\n}");
    for (const char* broken : {"\xff", "half \xed\x95", "surrogate \xed\xa0\x80", "overlong \xc0\xaf"}) {
        EXPECT_THROW(encode({1, {samples::tapRule(broken)}}), std::invalid_argument);
    }
}

TEST(SettingsDocument, reads_what_is_odd_but_unambiguous) {
    const Config plain{2, {samples::tapRule("tap"), samples::shortcutRule("keys")}};
    ASSERT_EQ(decode(twoRules), plain);
    const std::pair<const char*, const char*> harmless[] = {
        {R"("id":"tap",)", R"("id":"tap","note":{"by":[1.5,null]},)"},        // unknown members
        {R"("key":"rightCommand")", R"("key":"rightCommand","keyCode":"x")"}, // the other trigger's member
        {R"("keyCode":49)", R"("keyCode":49,"key":7)"},                       // the same the other way round
        {R"(["leftShift"])", R"(["leftShift","leftShift"])"},                 // a set
        {R"("enabled":true)", R"("enabled":"no","enabled":true)"},            // the last of two counts
        {R"("schemaVersion":2)", "\n\t\"schemaVersion\" : 2"},                // blanks
        {R"("id":"tap")", R"("i\u0064":"t\u0061p")"},                         // escapes
    };
    for (const auto& [from, to] : harmless) EXPECT_EQ(decode(twoRulesWith(from, to)), plain) << to;

    for (const char* version : {"0", "-7", "1", "3", "9223372036854775807", "-9223372036854775808"}) {
        const std::string text = twoRulesWith(":2,", std::string(":") + version + ",");
        EXPECT_EQ(std::to_string(decode(text).schemaVersion), version);
        EXPECT_EQ(probeSchemaVersion(text), decode(text).schemaVersion);
    }
    EXPECT_EQ(decode(twoRulesWith(R"("id":"tap")", R"("id":"")")).rules[0].id, "");
    EXPECT_EQ(std::get<trigger::Shortcut>(decode(twoRulesWith(":49", ":65535")).rules[1].trigger).key.keyCode,
              65535);
}

TEST(SettingsDocument, one_bad_member_fails_it_and_is_named) {
    const struct {
        const char* from;
        const char* to;
        const char* member;
        const char* description; // empty: any
    } cases[] = {
        {R"("schemaVersion":2)", R"("x":2)", "schemaVersion", ""},
        {":2,", R"(:"2",)", "schemaVersion", ""},
        {":2,", ":2.0,", "schemaVersion", ""},
        {":2,", ":2e0,", "schemaVersion", ""},
        {":2,", ":9223372036854775808,", "schemaVersion", ""},
        {":2,", ":-9223372036854775809,", "schemaVersion", ""},
        {R"("rules":[)", R"("rules":{},"x":[)", "rules", ""},
        {R"("rules":[)", R"("rules":[1,)", "rules", ""},
        {R"("rules":)", R"("rule":)", "rules", ""},
        {R"("id":"tap")", R"("id":1)", "id", ""},
        {R"("enabled":true,)", "", "enabled", ""},
        {R"("enabled":true)", R"("enabled":1)", "enabled", ""},
        {R"("trigger":{)", R"("trigger":[],"x":{)", "trigger", ""},
        {R"("type":"modifier_tap",)", "", "type", ""},
        {"modifier_tap", "Modifier_tap", "type", ""},
        {R"("key":"rightCommand")", R"("keyCode":54)", "key", ""},
        {"rightCommand", "RightCommand", "key", "unknown modifier key: RightCommand"},
        {":49", ":65536", "keyCode", ""},
        {":49", ":-1", "keyCode", ""},
        {":49", R"(:"49")", "keyCode", ""},
        {":49", ":49.0", "keyCode", ""},
        {R"(["leftShift"])", R"("leftShift")", "modifiers", ""},
        {R"(["leftShift"])", R"(["leftShift",3])", "modifiers", ""},
        {R"(["leftShift"])", R"(["쉬프트","?"])", "modifiers", "unknown modifier key: 쉬프트"},
        {R"("action":{"type":"toggle_input_source")", R"("action":{"type":"toggle")", "type", ""},
        {R"("sourceB":{)", R"("sourceB":null,"x":{)", "sourceB", ""},
        {R"("displayName":"ABC")", R"("displayname":"ABC")", "displayName", ""},
    };
    for (const auto& [from, to, member, description] : cases) {
        try {
            decode(twoRulesWith(from, to));
            ADD_FAILURE() << "accepted " << to;
        } catch (const DecodingError& error) {
            EXPECT_EQ(error.member(), member) << to;
            EXPECT_EQ(std::string_view(description).empty() ? "" : error.what(), std::string(description));
        }
    }
}

TEST(SettingsDocument, malformed_text_is_neither_read_nor_probed) {
    for (std::size_t length = 0; length < twoRules.size(); ++length) {
        const std::string cut = twoRules.substr(0, length);
        EXPECT_THROW(decode(cut), DecodingError) << length;
        EXPECT_EQ(probeSchemaVersion(cut), std::nullopt) << length;
    }
    const std::string malformed[] = {
        twoRules + "x",
        twoRules + std::string(1, '\0'), // as a crashing file system leaves them
        twoRules + twoRules,
        twoRulesWith("}]}", "},]}"),
        twoRulesWith("tap", "t\x01p"),
        twoRulesWith("tap", "t\xffp"),
        twoRulesWith("tap", "t\\ud800p"),
        twoRulesWith("{", "{/* */"),
    };
    for (const std::string& text : malformed) {
        EXPECT_THROW(decode(text), DecodingError) << text;
        EXPECT_EQ(probeSchemaVersion(text), std::nullopt) << text;
    }
}

TEST(SettingsDocument, version_is_found_whatever_else_the_document_holds) {
    const std::string deep = std::string(500'000, '[') + std::string(500'000, ']');
    const std::pair<std::string, std::optional<std::int64_t>> cases[] = {
        {R"({"schemaVersion":3,"rules":"anything"})", 3},
        {R"({"rules":)" + deep + R"(,"schemaVersion":3})", 3},
        {R"({"schemaVersion":3,"schemaVersion":1})", 1},
        {R"({"schemaVersion":1,"schemaVersion":"3"})", std::nullopt},
        {R"({"rules":[{"schemaVersion":3}]})", std::nullopt},
        {R"([{"schemaVersion":3}])", std::nullopt},
        {R"({"schemaVersion":[3]})", std::nullopt},
        {R"({"schemaVersion":18446744073709551615})", std::nullopt},
        {"3", std::nullopt},
    };
    for (const auto& [text, version] : cases)
        EXPECT_EQ(probeSchemaVersion(text), version) << text.substr(0, 60);
}

TEST(SettingsDocument, absurd_depth_and_size_are_refused_before_a_document_is_built) {
    const auto refusal = [](const std::string& text) -> std::string {
        try {
            decode(text);
        } catch (const DecodingError& error) {
            return error.what();
        }
        return "";
    };
    std::string text;
    text.resize(100'000'000, '[');
    EXPECT_EQ(refusal(text), "too deep or too many values");
    text = "[0";
    while (text.size() < 100'000'000) text += "," + text.substr(1);
    EXPECT_EQ(refusal(text), "too deep or too many values");

    const auto nested = [](std::size_t depth) {
        return twoRulesWith(R"("id":)",
                            R"("x":)" + std::string(depth, '[') + std::string(depth, ']') + R"(,"id":)");
    };
    EXPECT_EQ(refusal(nested(60)), "");
    EXPECT_EQ(refusal(nested(100)), "too deep or too many values");
}

} // namespace
} // namespace hopsel
