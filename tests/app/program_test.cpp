// The program as its user meets it, in a real X session.
#include "core/rules/temporary_folder.h"
#include "program_session.h"

#include <algorithm>
#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace hopsel::test;
using testing::HasSubstr;

namespace {

TEST_F(Session, EndsInOrderAndLeavesThePlainKeyboard) {
    for (const int signal : {SIGTERM, SIGINT}) {
        HopselProgram program(HOPSEL_EXECUTABLE, twoRules);
        ASSERT_TRUE(tapsUntilGroup(1));
        program.process().kill(signal);
        EXPECT_EQ(program.process().waitForExit(patience), 0);
        expectPlainKeyboard();
    }
}

TEST_F(Session, KilledWhileASwallowedKeyIsHeldItLeavesAWorkingKeyboard) {
    HopselProgram program(HOPSEL_EXECUTABLE, twoRules);
    ASSERT_TRUE(tapsUntilGroup(1));
    keyboard.press(key::leftShift);
    keyboard.press(key::space);
    ASSERT_TRUE(layouts.waitForGroup(0, patience));
    program.process().kill(SIGKILL);
    ASSERT_TRUE(program.process().waitForExit(patience));
    keyboard.release(key::space);
    keyboard.release(key::leftShift);
    expectPlainKeyboard();
    const auto another = program.startAnother();
    EXPECT_TRUE(tapsUntilGroup(1)) << "the lock of a killed copy does not count";
}

TEST_F(Session, StoppedWithAKeyToDecideOnItGivesTheKeyboardBackAndTakesItAgain) {
    HopselProgram program(HOPSEL_EXECUTABLE, twoRules);
    ASSERT_TRUE(tapsUntilGroup(1));
    ASSERT_TRUE(shiftSpaceSwitchesTo(0));
    for (const bool isInTheMiddle : {false, true}) {
        if (isInTheMiddle) { // of a hold, for which every key waits
            keyboard.press(key::leftShift);
            keyboard.press(key::space);
            ASSERT_TRUE(layouts.waitForGroup(1, patience));
        }
        program.process().kill(SIGSTOP);
        window->records();
        window->clear();
        const double start = monotonicSeconds();
        if (isInTheMiddle) {
            keyboard.release(key::space);
            keyboard.release(key::leftShift);
        } else {
            typeShiftSpace();
        }
        keyboard.tap(key::a);
        EXPECT_TRUE(window->waitFor([](const auto& records) {
            return std::any_of(records.begin(), records.end(),
                               [](const XRecord& each) { return each.code == key::a; });
        }));
        RecordProperty("keyboardBackAfterMilliseconds",
                       static_cast<int>((monotonicSeconds() - start) * 1000));
        expectPlainKeyboard();
        program.process().kill(SIGCONT);
        EXPECT_TRUE(program.process().waitForLine("the keyboard was given back", patience));
        EXPECT_TRUE(tapsUntilGroup(1));
        EXPECT_TRUE(shiftSpaceSwitchesTo(0));
    }
}

TEST_F(Session, ItEndsWithTheServerAndSaysSo) {
    HopselProgram program(HOPSEL_EXECUTABLE, twoRules);
    ASSERT_TRUE(tapsUntilGroup(1));
    server.kill();
    EXPECT_TRUE(program.process().waitForLine("X server at " + server.display() + " has gone", patience));
    EXPECT_EQ(program.process().waitForExit(patience), 1);
}

TEST_F(Session, FilesThatItMustNotTouchAreNamedInOneLineAndStay) {
    const std::pair<std::string, std::string> cases[] = {
        {"{\"schemaVersion\" : 1, \"rules\" : [,]}", "cannot be read; a copy is at"},
        {"{\"schemaVersion\" : 3, \"rules\" : \"anything\"}", "newer than this program"}};
    for (const auto& [settings, complaint] : cases) {
        HopselProgram program(HOPSEL_EXECUTABLE, settings);
        const auto line = program.process().waitForLine("", patience).value_or("");
        EXPECT_THAT(line, HasSubstr(program.settingsFile().string()));
        EXPECT_THAT(line, HasSubstr(complaint));
        program.process().kill(SIGTERM);
        EXPECT_EQ(program.process().waitForExit(patience), 0) << "it runs on without rules";
        EXPECT_EQ(hopsel::contents(program.settingsFile()), settings);
    }
}

TEST_F(Session, TheCommandLineAsksTheCopyThatRuns) {
    HopselProgram program(HOPSEL_EXECUTABLE, twoRules);
    const auto ask = [&](const std::vector<std::string>& arguments) {
        const auto asking = program.startAnother(arguments);
        const std::string said = asking->readAll(patience);
        return std::pair(asking->waitForExit(patience).value_or(-1), said);
    };
    using testing::Pair;
    const Deadline deadline(patience);
    while (ask({"--status"}).first == 3 && !deadline.hasPassed()) {
    }
    EXPECT_THAT(ask({"--status"}), Pair(0, HasSubstr("1. Right Super  English (US) ⇄ Russian")));
    EXPECT_EQ(ask({"--toggle"}), std::pair(0, std::string("Russian\n")));
    EXPECT_EQ(layouts.lockedGroup(), 1);
    EXPECT_EQ(ask({"--select", "xkb:ru"}).first, 0) << "it is the current one";
    EXPECT_EQ(ask({"--toggle", "2"}).first, 0);
    EXPECT_EQ(layouts.lockedGroup(), 0);
    EXPECT_THAT(ask({"--list-sources"}), Pair(0, "* xkb:us\tEnglish (US)\n  xkb:ru\tRussian\n"));
    EXPECT_THAT(ask({"--json", "--select", "xkb:fr"}), Pair(1, HasSubstr("{\"error\":")));
    EXPECT_THAT(ask({"--toggle", "9"}), Pair(1, HasSubstr("there is no rule")));
    EXPECT_THAT(ask({"--pause", "--json"}), Pair(0, HasSubstr("\"status\": \"paused\"")));
    EXPECT_THAT(ask({"--toggle"}), Pair(1, HasSubstr("Paused")));
    expectPlainKeyboard();
    EXPECT_EQ(ask({"--resume"}).first, 0);
    EXPECT_TRUE(tapsUntilGroup(1));
    EXPECT_EQ(ask({"--no-such-thing"}).first, 2);
    EXPECT_EQ(ask({"--quit"}).first, 0);
    EXPECT_EQ(program.process().waitForExit(patience), 0);
    EXPECT_THAT(ask({"--status"}), Pair(3, HasSubstr("no copy is running")));
}

TEST(NoSession, SaysWhatIsMissingAndLeaves) {
    for (const auto& display : {std::optional<std::string>(), std::optional<std::string>(":4099")}) {
        ChildProcess::Options options;
        options.program = HOPSEL_EXECUTABLE;
        options.environment = {{"DISPLAY", display}};
        options.errors = ChildProcess::Output::capture;
        ChildProcess program(options);
        const std::string said = program.readAll(patience);
        EXPECT_THAT(said, HasSubstr(display ? "cannot connect" : "DISPLAY is not set"));
        EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1);
        EXPECT_EQ(program.waitForExit(patience), 1);
    }
}

// It would start, and hear no key.
TEST(NoSession, WithFewOpenFilesItSaysSoAndLeaves) {
    ChildProcess::Options options;
    options.program = "prlimit";
    options.package = "util-linux";
    options.arguments = {"--nofile=18:18", HOPSEL_EXECUTABLE};
    options.errors = ChildProcess::Output::capture;
    ChildProcess program(options);
    EXPECT_THAT(program.readAll(patience), HasSubstr("more files can be open, and 64 are needed"));
    EXPECT_EQ(program.waitForExit(patience), 1);
}

} // namespace
