#include "core/rules/config_json.h"

#include "core/rules/rule_samples.h"
#include "core/rules/temporary_folder.h"

#include <gmock/gmock.h>

namespace hopsel {
namespace {

using config_json::decode;
using config_json::encode;
using samples::twoRules;
using samples::twoRulesWith;

/// The member at fault and what is said about it, or nothing if the text is a settings document.
std::string refusal(const std::string& text) {
    try {
        decode(text);
    } catch (const config_json::DecodingError& error) {
        return error.member() + ": " + error.what();
    }
    return "";
}

TEST(SettingsDocument, IsWrittenInExactlyOneWay) {
    Rule keys = samples::shortcutRule("keys", {49, {ModifierKey::rightShift, ModifierKey::leftCommand}});
    keys.enabled = false;
    keys.action = samples::toggle("두벌식", "\"/\\\x01\t\x7f");
    const Config config{2, {keys, samples::tapRule("tap")}};
    const std::string text = contents(HOPSEL_WRITTEN_DOCUMENT);
    EXPECT_EQ(encode(config) + "\n", text);
    EXPECT_EQ(decode(text), config);
    EXPECT_EQ(encode(Config::empty()), "{\n  \"rules\" : [],\n  \"schemaVersion\" : 1\n}");
}

TEST(SettingsDocument, ReadsWhatIsOddButUnambiguous) {
    const Config plain{2, {samples::tapRule("tap"), samples::shortcutRule("keys")}};
    const std::pair<const char*, const char*> harmless[] = {
        {R"("id":"tap",)", R"("id":"tap","note":{"by":[1.5,null]},)"},        // unknown members
        {R"("key":"rightCommand")", R"("key":"rightCommand","keyCode":"x")"}, // the other trigger's member
        {R"(["leftShift"])", R"(["leftShift","leftShift"])"},                 // a set
        {R"("enabled":true)", R"("enabled":"no","enabled":true)"},            // the last of two counts
        {R"("id":"tap",)",
         R"("id":"tap","note":["\uD83D","\\\udc00",-1e400,1.5E+999],)"}, // beyond any program
        {R"("schemaVersion":2)", "\n\t\"schema\\u0056ersion\" : 2"},     // blanks, escapes
    };
    for (const auto& [from, to] : harmless) EXPECT_EQ(decode(twoRulesWith(from, to)), plain) << to;
    for (const char* version : {"-7", "3", "9223372036854775807", "-9223372036854775808"})
        EXPECT_EQ(std::to_string(decode(twoRulesWith(":2,", ":" + std::string(version) + ",")).schemaVersion),
                  version);
}

TEST(SettingsDocument, OneBadMemberFailsItAndIsNamed) {
    const char* const cases[][3] = {
        {R"("schemaVersion":2)", R"("x":2)", "schemaVersion: "},
        {":2,", ":9223372036854775808,", "schemaVersion: "},
        {R"("rules":[)", R"("rules":[1,)", "rules: "},
        {":2,", ":1e400,", "schemaVersion: "},
        {R"("id":"tap")", R"("id":1)", "id: "},
        {R"("id":"tap")", R"("id":"t\ud800p")", "id: "},
        {R"("enabled":true)", R"("x":true)", "enabled: "},
        {R"("enabled":true)", R"("enabled":1)", "enabled: "},
        {":49", ":49.0", "keyCode: "},
        {"toggle_input_source", "toggle", "type: unknown action type: toggle"},
        {"modifier_tap", "Modifier_tap", "type: "},
        {R"("key":"rightCommand")", R"("keyCode":54)", "key: "},
        {"rightCommand", "RightCommand", "key: unknown modifier key: RightCommand"},
        {":49", ":65536", "keyCode: "},
        {R"(["leftShift"])", R"(["쉬프트","?"])", "modifiers: unknown modifier key: 쉬프트"},
        {R"("sourceB":{)", R"("sourceB":null,"x":{)", "sourceB: "},
        {R"("displayName":"ABC")", R"("displayname":"ABC")", "displayName: "},
    };
    for (const auto& [from, to, expected] : cases)
        EXPECT_THAT(refusal(twoRulesWith(from, to)), testing::StartsWith(expected)) << to;
}

TEST(SettingsDocument, VersionIsTheOutermostWhateverElseANewerProgramWrote) {
    const auto probe = config_json::probeSchemaVersion;
    EXPECT_EQ(probe(R"({"schemaVersion":3,"rules":[1e400,"\ud800",{"schemaVersion":1}]})"), 3);
    EXPECT_EQ(probe(R"({"rules":[{"schemaVersion":3}]})"), std::nullopt);
}

TEST(SettingsDocument, MalformedTextIsNeitherReadNorProbed) {
    std::vector<std::string> malformed{
        twoRules + std::string(1, '\0'), // as a crashing file system leaves them
        twoRulesWith("}]}", "},]}"),     twoRulesWith("tap", "t\x01p"),   twoRulesWith("tap", "t\xffp"),
        twoRulesWith(":2,", ":1e,"),     twoRulesWith("tap", "t\\ud80p"),
    };
    for (std::size_t length = 0; length < twoRules.size(); ++length)
        malformed.push_back(twoRules.substr(0, length));
    for (const std::string& text : malformed) {
        EXPECT_THAT(refusal(text), testing::StartsWith(": malformed JSON")) << text;
        EXPECT_EQ(config_json::probeSchemaVersion(text), std::nullopt) << text;
    }
}

TEST(SettingsDocument, AbsurdDepthAndSizeAreRefusedBeforeADocumentIsBuilt) {
    const std::string tooMuch = ": too deep or too many values";
    EXPECT_EQ(refusal(std::string(100'000'000, '[')), tooMuch); // NOLINT(bugprone-string-constructor)
    std::string wide = "[0";
    while (wide.size() < 100'000'000) wide += "," + wide.substr(1);
    EXPECT_EQ(refusal(wide), tooMuch);
    for (const auto& [depth, expected] : {std::pair(60U, std::string()), std::pair(100U, tooMuch)}) {
        const std::string nested = std::string(depth, '[') + std::string(depth, ']');
        EXPECT_EQ(refusal(twoRulesWith(R"("id":)", R"("x":)" + nested + R"(,"id":)")), expected);
    }
}

} // namespace
} // namespace hopsel
