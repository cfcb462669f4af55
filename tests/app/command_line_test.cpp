// What stands after the program's name.
#include "app/command_line.h"

#include <gmock/gmock.h>

namespace hopsel {
namespace {

using Wish = CommandLine::Wish;

TEST(CommandLine, knowsItsOptionsAndRefusesAllOthers) {
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
        {{""}, Wish::refuse},
    };
    for (const auto& [arguments, wish] : cases) {
        const CommandLine read = CommandLine::read(arguments);
        EXPECT_EQ(read.wish, wish) << testing::PrintToString(arguments);
        EXPECT_EQ(read.problem.empty(), wish != Wish::refuse);
        EXPECT_EQ(read.renderDirectory, wish == Wish::renderUI ? "/tmp/x" : "");
    }
    EXPECT_THAT(CommandLine::read({"--backgruond"}).problem, testing::HasSubstr("--backgruond"));
    EXPECT_THAT(CommandLine::help(), testing::HasSubstr("  --background          start"));
}

} // namespace
} // namespace hopsel
