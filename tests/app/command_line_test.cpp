// What stands after the program's name.
#include "app/command_line.h"

#include <gmock/gmock.h>

namespace hopsel {
namespace {

using Wish = CommandLine::Wish;

TEST(CommandLine, KnowsItsOptionsAndRefusesAllOthers) {
    const std::pair<std::vector<std::string>, Wish> cases[] = {
        {{}, Wish::run},
        {{"--render-ui"}, Wish::run},
        {{"--background", "--render-ui"}, Wish::background},
        {{"--nonsense", "--render-ui", "/tmp/x"}, Wish::renderUI},
        {{"--background"}, Wish::background},
        {{"--version", "--background"}, Wish::version},
        {{"--background", "--help"}, Wish::help},
        {{"-platform", "--help", "-style", "fusion"}, Wish::run},
        {{"-session", "10f3_42"}, Wish::background},
        {{"-psn_0_12345", "-AppleLanguages", "(ko)"}, Wish::run},
        {{"--backgruond"}, Wish::refuse},
        {{"--help", "-x"}, Wish::refuse},
        {{"--background=yes"}, Wish::refuse},
        {{"rules.json"}, Wish::refuse},
        {{"--status", "--json"}, Wish::ask},
        {{"--toggle"}, Wish::ask},
        {{"--select"}, Wish::refuse},
        {{"--select", ""}, Wish::refuse},
        {{"--pause", "--resume"}, Wish::refuse},
        {{"--background", "--pause"}, Wish::refuse},
        {{"--json"}, Wish::refuse},
        {{"--pause", "now"}, Wish::refuse},
        {{"--quit", "--help"}, Wish::help},
        {{""}, Wish::refuse},
    };
    for (const auto& [arguments, wish] : cases) {
        const CommandLine read = CommandLine::read(arguments);
        EXPECT_EQ(read.wish, wish) << testing::PrintToString(arguments);
        EXPECT_EQ(read.problem.empty(), wish != Wish::refuse);
        EXPECT_EQ(read.renderDirectory, wish == Wish::renderUI ? "/tmp/x" : "");
    }
    EXPECT_THAT(CommandLine::read({"--backgruond"}).problem, testing::HasSubstr("--backgruond"));
    const CommandLine toggle = CommandLine::read({"--toggle", "--json"});
    EXPECT_TRUE(toggle.command == "toggle" && toggle.argument.empty() && toggle.json);
    EXPECT_EQ(CommandLine::read({"--select", "--odd"}).argument, "--odd") << "whatever a source is called";
    EXPECT_THAT(CommandLine::help(), testing::HasSubstr("  --background          start"));
}

} // namespace
} // namespace hopsel
