#include "platform/linux/sources/linux_input_sources.h"

#include "support/framework_watch.h"

namespace hopsel::test {
namespace {

/// Has one source, named for itself, which is the current one.
class FakeFramework final : public InputFramework {
  public:
    explicit FakeFramework(std::string sourceName) : name(std::move(sourceName)) {}
    std::vector<InputSourceInfo> enabledKeyboardSources() override { return {{name, name, "", {}, true}}; }
    std::optional<std::string> currentID() override { return name; }
    SelectResult select(const std::string& id) override { return id == name ? accepted : notFound; }
    std::optional<SelectResult> refusal() const override { return said; }
    bool isInCharge() const override { return isThere; }
    bool isAsking() const override { return isAsked; }
    void retry() override { ++tries; }
    Retries retries() const override { return wanted; }
    void ask(bool asked) {
        isAsked = asked;
        onAskingChanged();
    }
    void be(bool there) {
        isThere = there;
        onInChargeChanged();
    }

    std::string name;
    bool isThere = false;
    bool isAsked = false;
    Retries wanted = Retries::never;
    int tries = 0;
    std::optional<SelectResult> said;
};

class LinuxInputSourcesTest : public testing::Test {
  protected:
    LinuxInputSourcesTest() {
        std::vector<std::unique_ptr<InputFramework>> frameworks;
        frameworks.emplace_back(first = new FakeFramework("first"));
        frameworks.emplace_back(second = new FakeFramework("second"));
        sources = std::make_unique<LinuxInputSources>(std::move(frameworks), fallback);
        sources->onSourcesChanged = [this] { told.emplace_back("sources"); };
        sources->onSelectedChanged = [this] { told.emplace_back("selected"); };
    }
    std::string answering() {
        const auto current = sources->currentID().value_or("");
        EXPECT_EQ(sources->enabledKeyboardSources().at(0).id, current);
        EXPECT_EQ(sources->inCharge() == nullptr, current == "fallback");
        return current;
    }

    std::shared_ptr<FakeFramework> fallback = std::make_shared<FakeFramework>("fallback");
    FakeFramework* first = nullptr;
    FakeFramework* second = nullptr;
    std::unique_ptr<LinuxInputSources> sources;
    Strings told;
};

TEST_F(LinuxInputSourcesTest, TheFirstInChargeAnswersAtOnceAndATakeOverIsToldOnce) {
    EXPECT_EQ(answering(), "fallback");
    const Strings both{"sources", "selected"};
    const struct {
        std::function<void()> event;
        std::string answering;
        Strings told;
    } steps[] = {
        {[&] { second->be(true); }, "second", both},
        {[&] { first->be(true); }, "first", both},
        {[&] { second->be(false); }, "first", {}},
        {[&] { second->be(true); }, "first", {}},
        {[&] { first->be(false); }, "second", both},
        {[&] { (second->be(false), first->be(true), second->be(true)); }, "first", both},
        {[&] { (first->be(false), first->be(true)); }, "first", both}, // another daemon under the same name
        {[&] { (first->be(false), second->onSourcesChanged(), second->onSelectedChanged()); }, "second",
         both},
        {[&] { second->onSelectedChanged(); }, "second", {"selected"}},
        {[&] { (first->onSourcesChanged(), fallback->onSelectedChanged()); }, "second", {}},
        {[&] { second->be(false); }, "fallback", both},
        {[&] { fallback->onSourcesChanged(); }, "fallback", {"sources"}},
    };
    for (const auto& step : steps) {
        SCOPED_TRACE(&step - steps);
        told.clear();
        step.event();
        EXPECT_EQ(answering(), step.answering);
        runLoopUntil([&] { return told.size() >= step.told.size(); });
        EXPECT_TRUE(staysFalse([&] { return told != step.told; }, std::chrono::milliseconds(10)))
            << testing::PrintToString(told);
    }
    sources.reset();
    EXPECT_FALSE(fallback->onSourcesChanged || fallback->onSelectedChanged) << "which may live longer";
}

TEST_F(LinuxInputSourcesTest, AsksWhileOneThatMayTakeOverHasNotAnsweredButNotForEver) {
    EXPECT_FALSE(sources->isAsking());
    second->ask(true);
    EXPECT_TRUE(sources->isAsking());
    first->be(true);
    EXPECT_FALSE(sources->isAsking()) << "what stands behind the one in charge changes nothing";
    first->be(false);
    EXPECT_TRUE(sources->isAsking());
    second->ask(false);
    EXPECT_FALSE(sources->isAsking());
    EXPECT_TRUE(runLoopUntil([&] { return !told.empty(); }));

    first->ask(true);
    EXPECT_TRUE(runLoopUntil([&] { return told.size() > 2; }));
    told.clear();
    EXPECT_TRUE(runLoopUntil([&] { return !sources->isAsking(); }, std::chrono::seconds(20)));
    EXPECT_TRUE(runLoopUntil([&] { return !told.empty(); })) << "whoever waits hears of it";
    second->ask(true);
    EXPECT_FALSE(sources->isAsking()) << "the one that hangs still does";
    first->ask(false);
    first->be(true);
    EXPECT_FALSE(sources->isAsking());
}

TEST_F(LinuxInputSourcesTest, RetriesForEverWhatIsBrokenAndAroundUseWhatTellsNothing) {
    using enum InputFramework::Retries;
    const auto rounds = [this] {
        const int before = first->tries;
        while (sources->needsRetry() && first->tries < before + 20) sources->retry();
        return first->tries - before;
    };
    EXPECT_EQ(rounds(), 0);
    first->wanted = second->wanted = whileUsed;
    EXPECT_EQ(rounds(), 5) << "the start counts as use";
    EXPECT_EQ(rounds(), 0);
    sources->noteUse();
    EXPECT_EQ(rounds(), 5);
    second->wanted = always;
    EXPECT_EQ(rounds(), 20);
    first->be(true);
    EXPECT_EQ(rounds(), 0) << "those behind the one in charge change nothing";
    sources->noteUse();
    EXPECT_EQ(rounds(), 5);
}

TEST_F(LinuxInputSourcesTest, ARequestIsLostWithTheOneThatAcceptedIt) {
    first->said = gone; // from the time of the daemon before
    first->be(true);
    EXPECT_EQ(sources->refusal(), std::nullopt);
    first->said = refused;
    EXPECT_EQ(sources->select("second"), notFound);
    EXPECT_EQ(sources->refusal(), std::nullopt);
    EXPECT_EQ(sources->select("first"), accepted);
    EXPECT_EQ(sources->refusal(), refused);
    second->be(true);
    EXPECT_EQ(sources->refusal(), refused);
    first->said.reset();
    first->be(false);
    EXPECT_EQ(sources->refusal(), gone);
    first->be(true);
    EXPECT_EQ(sources->refusal(), gone) << "it knows nothing of the request";
    EXPECT_EQ(sources->select("first"), accepted);
    EXPECT_EQ(sources->refusal(), std::nullopt);
}

} // namespace
} // namespace hopsel::test
