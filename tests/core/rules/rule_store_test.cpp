// The settings store on a real folder, through the real storage.
#include "core/rules/rule_store.h"

#include "core/rules/config_json.h"
#include "core/rules/rule_health.h"
#include "core/rules/rule_samples.h"
#include "core/rules/rule_validator.h"
#include "core/rules/temporary_folder.h"
#include "platform/posix/posix_file_storage.h"

#include <functional>
#include <gmock/gmock.h>
#include <tuple>

namespace hopsel {
namespace {

namespace fs = std::filesystem;
using config_json::encode;
using samples::tapRule;
using samples::twoRules;
using samples::twoRulesWith;

auto failsWith(const StoreError::Reason& reason) {
    return testing::Throws<StoreError>(testing::Property(&StoreError::reason, reason));
}

/// Another program may write in the last moment before we do.
class MeddledStorage final : public PosixFileStorage {
  public:
    using PosixFileStorage::PosixFileStorage;
    bool replace(const fs::path& file, const std::optional<FileMark>& expected,
                 std::string_view bytes) override {
        if (meddle) meddle();
        return PosixFileStorage::replace(file, expected, bytes);
    }
    std::function<void()> meddle;
};

class RuleStoreTest : public FolderTest {
  protected:
    std::shared_ptr<MeddledStorage> storage = std::make_shared<MeddledStorage>(folder);
    std::int64_t now = 1700000000;
    RuleStore store{RuleStore::defaultFileURL(*storage), storage, [this] { return now; }};
    const std::function<void()> load = [this] { store.load(); };
    const fs::path file = folder / "Hopsel/config.json";

    /// Each kind of change fails, saying this, and leaves the file, its folder and the memory as they are.
    void expectEveryChangeFails(const std::string& why) {
        const auto state = [this] { return std::tuple(store.config(), contents(file), listing()); };
        const auto before = state();
        const std::function<void()> changes[] = {
            [&] { store.add(tapRule("new", ModifierKey::leftOption)); },
            [&] { store.update(tapRule("tap", ModifierKey::leftControl)); },
            [&] { store.remove("keys"); },
            [&] { store.setEnabled("tap", false); },
        };
        for (const auto& change : changes) {
            EXPECT_THAT(change, testing::ThrowsMessage<StoreError>(testing::HasSubstr(why)));
            EXPECT_TRUE(state() == before);
        }
    }
};

TEST_F(RuleStoreTest, LoadingNeverRewritesAndEveryChangeWritesWhatIsKnown) {
    const std::string text = twoRulesWith(":2,", R"(:-3,"note":1,)");
    put(file, text);
    load();
    EXPECT_EQ(contents(file), text);
    const auto expectOnDisk = [&](const Config& config) {
        EXPECT_EQ(contents(file), encode(config));
        EXPECT_EQ(store.config(), config);
    };
    Rule keys = samples::shortcutRule("keys");
    keys.enabled = false;
    store.setEnabled("keys", false);
    expectOnDisk({2, {tapRule("tap"), keys}}); // version 2 for as long as there is a shortcut
    store.remove("tap");
    expectOnDisk({2, {keys}});
    EXPECT_THAT([&] { store.add(keys); }, failsWith(store_error::DuplicateId{"keys"}));
    EXPECT_THAT([&] { store.update(tapRule("keys", ModifierKey::leftShift)); },
                failsWith(store_error::Invalid{{rule_issue::DisallowedTrigger{ModifierKey::leftShift}}}));
    expectOnDisk({2, {keys}});
    store.update(tapRule("keys", ModifierKey::leftOption));
    expectOnDisk({1, {tapRule("keys", ModifierKey::leftOption)}});
}

TEST_F(RuleStoreTest, HandMadeRulesThatNoEditorWouldMakeCanBeSwitchedAndRemoved) {
    const Rule shift = tapRule("shift", ModifierKey::rightShift);
    put(file, encode({2, {shift, samples::shortcutRule("keys"), tapRule("tap"), tapRule("tap")}}));
    load();
    store.setEnabled("shift", false); // off is always allowed, and on as well: it was so
    store.setEnabled("shift", true);
    const Rule moved = samples::shortcutRule("keys", {96, {}});
    store.update(moved);
    EXPECT_EQ(store.config().rules[1], moved) << "in its place";
    EXPECT_THAT([&] { store.add(shift); }, failsWith(store_error::DuplicateId{"shift"}))
        << "the first reason";
    store.remove("tap");
    EXPECT_EQ(contents(file), encode({2, {shift, moved}}));
}

TEST(RuleValidator, NamesEachFault) {
    using namespace rule_issue;
    const std::vector<Rule> others{tapRule("other")};
    const auto issuesOf = [&](const Rule& rule) { return rule_validator::issues(rule, others); };
    const auto free = ModifierKey::leftOption;
    using Issues = std::vector<RuleIssue>;
    EXPECT_EQ(issuesOf(tapRule("a", ModifierKey::rightShift)),
              Issues{DisallowedTrigger{ModifierKey::rightShift}});
    EXPECT_EQ(issuesOf(samples::shortcutRule("a", {0, {}})), Issues{(DisallowedShortcut{{0, {}}})});
    for (const auto& empty : {samples::toggle("", "b"), samples::toggle("a", ""), samples::toggle("", "")})
        EXPECT_EQ(issuesOf(tapRule("a", free, empty)), Issues{EmptySourceId{}});
    EXPECT_EQ(issuesOf(tapRule("a", ModifierKey::rightCommand, samples::toggle("a", "a"))),
              (Issues{DuplicateTrigger{"other"}, SameSource{}}));
}

TEST(RuleHealth, NamesWhatIsMissingInTheOrderOfTheRule) {
    const auto missing = [](const std::set<std::string>& there) {
        return rule_health_checker::missingSources(tapRule("a"), there);
    };
    using testing::ElementsAre;
    EXPECT_THAT(missing({"abc", "dvorak"}), ElementsAre());
    EXPECT_THAT(missing({"abc"}), ElementsAre("dvorak"));
    EXPECT_THAT(missing({"dvorak"}), ElementsAre("abc"));
    EXPECT_THAT(missing({}), ElementsAre("abc", "dvorak"));
}

TEST(Rule, HasARandomIdentifierInUpperCase) {
    const auto make = [] { return Rule::make(trigger::ModifierTap{}, samples::toggle()).id; };
    EXPECT_THAT(make(),
                testing::MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}"));
    EXPECT_NE(make(), make());
}

TEST_F(RuleStoreTest, ANewerFileIsLeftAloneEvenIfItMakesNoSense) {
    put(file, R"({"schemaVersion":3,"rules":"anything"})");
    EXPECT_THAT(load, failsWith(store_error::UnsupportedSchemaVersion{3}));
    expectEveryChangeFails("not been loaded");
    EXPECT_THAT(listing(), testing::ElementsAre("Hopsel", "Hopsel/config.json"));
}

TEST_F(RuleStoreTest, ACorruptFileIsKeptAndCopiedAsideAndTheCopyStaysAsItIs) {
    const std::string corrupt = R"({"schemaVersion":"3","rules":[]})";
    put(file, corrupt);
    const std::string backup = file.string() + ".corrupt-1700000000";
    onFullDisk([&] { EXPECT_THAT(load, failsWith(store_error::Corrupt{std::nullopt})); });
    EXPECT_FALSE(fs::exists(backup)) << "half a copy";
    EXPECT_THAT(load, failsWith(store_error::Corrupt{backup}));
    EXPECT_EQ(fs::status(backup).permissions(), fs::perms(0600));
    EXPECT_EQ(contents(file), corrupt);
    now += 60;
    EXPECT_THAT(load, failsWith(store_error::Corrupt{backup})) << "one copy for each content";
    now -= 60;
    put(file, "worse");
    EXPECT_THAT(load, failsWith(store_error::Corrupt{std::nullopt}));
    EXPECT_EQ(contents(backup), corrupt);
    expectEveryChangeFails("not been loaded");
    EXPECT_THAT(listing(), testing::SizeIs(3));
}

TEST_F(RuleStoreTest, WhatAnotherProgramWroteIsTakenInBeforeEachChangeEvenInTheLastMoment) {
    put(file, twoRules);
    load();
    EXPECT_EQ(store.takeOutsideChange(), RuleStore::Outside::unchanged);
    const Rule theirs = tapRule("theirs", ModifierKey::leftControl);
    put(file, encode({1, {tapRule("tap"), theirs}}));
    storage->meddle = [&] {
        storage->meddle = nullptr;
        put(file, encode({1, {theirs, tapRule("tap")}}));
    };
    store.setEnabled("tap", false);
    Rule off = tapRule("tap");
    off.enabled = false;
    EXPECT_EQ(contents(file), encode({1, {theirs, off}}));
    storage->meddle = [&] { put(file, contents(file) + " "); };
    EXPECT_THAT([&] { store.remove("tap"); },
                testing::ThrowsMessage<StoreError>(testing::HasSubstr("again and again")));
    storage->meddle = nullptr;
    EXPECT_THAT([&] { store.remove("keys"); }, failsWith(store_error::NotFound{"keys"}));
    fs::remove(file);
    EXPECT_EQ(store.takeOutsideChange(), RuleStore::Outside::unchanged) << "somebody may be replacing it";
    store.remove("theirs");
    EXPECT_EQ(contents(file), encode({1, {off}}));
}

TEST_F(RuleStoreTest, WhatAnotherProgramDamagedIsWrittenOverOnlyOnceThereIsACopy) {
    put(file, twoRules);
    load();
    const std::string damaged = "{ half a file, cut off";
    put(file, damaged);
    EXPECT_EQ(store.takeOutsideChange(), RuleStore::Outside::damaged);
    EXPECT_EQ(store.config(), config_json::decode(twoRules));
    onFullDisk([&] { expectEveryChangeFails("cannot be written"); });
    EXPECT_EQ(contents(file), damaged);
    store.remove("keys");
    ASSERT_TRUE(store.keptAside());
    EXPECT_EQ(contents(*store.keptAside()), damaged);
    EXPECT_EQ(contents(file), encode({1, {tapRule("tap")}}));
    const std::string newer = twoRulesWith(":2,", ":3,");
    put(file, newer);
    EXPECT_THAT([&] { store.takeOutsideChange(); }, failsWith(store_error::UnsupportedSchemaVersion{3}));
    expectEveryChangeFails("newer than this program");
    EXPECT_EQ(contents(file), newer);
}

TEST_F(RuleStoreTest, WhatCannotBeReadIsAnErrorOfTheStorageAndNotAFirstRun) {
    put(file, twoRules);
    for (const fs::path& locked : {file, file.parent_path()}) {
        ::chmod(locked.c_str(), 0);
        asOrdinaryUser([&] { EXPECT_THROW(load(), std::system_error); });
        ::chmod(locked.c_str(), 0755);
    }
    expectEveryChangeFails("not been loaded");
}

TEST_F(RuleStoreTest, ALaterLoadThatFailsKeepsTheDocumentAndOneWithoutAFileLeavesNoTrace) {
    put(file, twoRules);
    load();
    for (const std::string& text : {std::string("{"), twoRulesWith(":2,", ":4,")}) {
        put(file, text);
        EXPECT_THROW(load(), StoreError);
        EXPECT_EQ(store.config(), config_json::decode(twoRules));
    }
    fs::remove_all(file.parent_path());
    load(); // as on the first run
    EXPECT_EQ(store.config(), Config::empty());
    EXPECT_THAT(listing(), testing::IsEmpty());
    store.add(tapRule("tap"));
    EXPECT_EQ(contents(file), encode({1, {tapRule("tap")}}));
}

TEST_F(RuleStoreTest, ADiskThatRefusesCostsNeitherTheFileNorTheRules) {
    put(file, twoRules);
    load();
    onFullDisk([&] { expectEveryChangeFails("File too large"); });
    ::chmod(file.parent_path().c_str(), 0555);
    asOrdinaryUser([&] { expectEveryChangeFails("Permission denied"); });
    ::chmod(file.parent_path().c_str(), 0755);
    const Rule unwritable = tapRule("new", ModifierKey::leftOption, samples::toggle("a", "\xff"));
    EXPECT_THROW(store.add(unwritable), StoreError);
    store.remove("keys"); // nothing is stuck
    EXPECT_EQ(contents(file), encode({1, {tapRule("tap")}}));
}

} // namespace
} // namespace hopsel
