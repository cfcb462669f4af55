// What another start of the program asks, and what it is answered.
#include "app/command_desk.h"
#include "support/fakes/model_rig.h"
#include "support/qt_waiting.h"

#include <gmock/gmock.h>

namespace hopsel {
namespace {

using nlohmann::json;

class Desk : public testing::Test, protected fakes::ModelRig {
  protected:
    Desk() : desk(launch()) {}
    void ask(const std::string& request) {
        desk.ask(request, [this](const std::string& reply) { replies.push_back(json::parse(reply)); });
    }
    int lastExit() const { return replies.back()["exit"]; }

    CommandDesk desk;
    std::vector<json> replies;
};

TEST_F(Desk, RefusesWhatIsNoRequest) {
    for (const char* request : {"", "status", "[1]", "{}", R"({"command": 7})", R"({"command": "format"})",
                                R"({"command": "quit"})", "{\"command\": \"status", "\xff\xfe"}) {
        ask(request);
        EXPECT_EQ(lastExit(), 2) << request;
    }
    EXPECT_TRUE(calls.empty());
}

TEST_F(Desk, AnswersASwitchOnceWhenItsEndIsToldOrItsTimeIsOver) {
    ask(R"({"command": "select", "argument": "palette"})");
    EXPECT_EQ(lastExit(), 1) << "it cannot be selected";
    ask(R"({"command": "select", "argument": "hangul"})");
    ASSERT_EQ(engine->requested.size(), 1U);
    EXPECT_EQ(replies.size(), 1U) << "not before it has ended";
    const std::string name = engine->requested[0].id;
    emitEvent(engine_event::Switched{"another rule", "abc", "hangul", true, 1});
    EXPECT_EQ(replies.size(), 1U);
    emitEvent(engine_event::SwitchFailed{name, "hangul", select_result::Failed{5}});
    emitEvent(engine_event::Switched{name, "abc", "hangul", true, 1});
    EXPECT_EQ(replies.size(), 2U);
    EXPECT_EQ(lastExit(), 1);
    EXPECT_THAT(replies.back()["text"].get<std::string>(), testing::HasSubstr("(5)"));

    desk.setDeadline(std::chrono::milliseconds(1));
    ask(R"({"command": "select", "argument": "abc"})");
    EXPECT_TRUE(test::runLoopUntil([&] { return replies.size() == 3; }));
    EXPECT_EQ(lastExit(), 4);
}

} // namespace
} // namespace hopsel
