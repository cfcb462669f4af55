#include "core/platform/linux/session_sources/linux_input_sources.h"

#include "core/platform/linux/xkb/platform_errors.h"
#include "support/qt_waiting.h"

#include <gmock/gmock.h>

namespace hopsel::test {
namespace {

using Strings = std::vector<std::string>;

const SelectResult accepted = select_result::Selected{};
const SelectResult gone = select_result::Failed{platform_error::frameworkGone};
const SelectResult refused = select_result::Failed{platform_error::frameworkRefused};

/// Has one source, named for itself, which is the current one.
class FakeFramework final : public InputFramework {
  public:
    explicit FakeFramework(std::string sourceName) : name(std::move(sourceName)) {}
    std::vector<InputSourceInfo> enabledKeyboardSources() override { return {{name, name, "", {}, true}}; }
    std::optional<std::string> currentID() override { return name; }
    SelectResult select(const std::string& id) override {
        return id == name ? accepted : SelectResult(select_result::NotFound{});
    }
    std::optional<SelectResult> refusal() const override { return said; }
    bool isInCharge() const override { return isThere; }
    void retry() override { ++retries; }
    void be(bool there) {
        isThere = there;
        onInChargeChanged();
    }

    std::string name;
    bool isThere = false;
    std::optional<SelectResult> said;
    int retries = 0;
};

class LinuxInputSourcesTest : public testing::Test {
  protected:
    void start(bool hasFallback = true) {
        std::vector<std::unique_ptr<InputFramework>> frameworks;
        frameworks.emplace_back(first = new FakeFramework("first"));
        frameworks.emplace_back(second = new FakeFramework("second"));
        sources =
            std::make_unique<LinuxInputSources>(std::move(frameworks), hasFallback ? fallback : nullptr);
        sources->onSourcesChanged = [this] { told.emplace_back("sources"); };
        sources->onSelectedChanged = [this] { told.emplace_back("selected"); };
    }
    std::string answering() {
        const auto current = sources->currentID().value_or("nobody");
        const auto list = sources->enabledKeyboardSources();
        EXPECT_EQ(list.empty() ? "nobody" : list[0].id, current);
        const InputFramework* const framework = sources->inCharge();
        EXPECT_EQ(framework != nullptr, current == "first" || current == "second");
        return current;
    }

    std::shared_ptr<FakeFramework> fallback = std::make_shared<FakeFramework>("fallback");
    FakeFramework* first = nullptr;
    FakeFramework* second = nullptr;
    std::unique_ptr<LinuxInputSources> sources;
    Strings told;
};

TEST_F(LinuxInputSourcesTest, TheFirstInChargeAnswersAtOnceAndATakeOverIsToldOnce) {
    start();
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
}

TEST_F(LinuxInputSourcesTest, ARequestIsLostWithTheOneThatAcceptedIt) {
    start();
    first->said = gone; // from the time of the daemon before
    first->be(true);
    EXPECT_EQ(sources->refusal(), std::nullopt);
    first->said = refused;
    EXPECT_EQ(sources->select("second"), SelectResult(select_result::NotFound{}));
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

TEST_F(LinuxInputSourcesTest, WithoutAFallbackThereMayBeNothingAndAllAreTriedAgain) {
    start(false);
    EXPECT_EQ(answering(), "nobody");
    EXPECT_EQ(sources->select("first"), SelectResult(select_result::NotFound{}));
    EXPECT_EQ(sources->refusal(), std::nullopt);
    sources->retry();
    EXPECT_EQ(first->retries + second->retries, 2);
}

TEST_F(LinuxInputSourcesTest, TheFallbackMayLiveLonger) {
    start();
    first->be(true);
    sources.reset();
    EXPECT_FALSE(fallback->onSourcesChanged || fallback->onSelectedChanged);
    EXPECT_TRUE(staysFalse([&] { return !told.empty(); }, std::chrono::milliseconds(10)));
}

} // namespace
} // namespace hopsel::test
