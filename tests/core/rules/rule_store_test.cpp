// The settings store on a real folder, through the real storage.
#include "core/rules/rule_store.h"

#include "core/rules/config_json.h"
#include "core/rules/rule_samples.h"
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

class RuleStoreTest : public FolderTest {
  protected:
    std::shared_ptr<PosixFileStorage> storage = std::make_shared<PosixFileStorage>(folder);
    RuleStore store{RuleStore::defaultFileURL(*storage), storage, [] { return 1700000000; }};
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

TEST_F(RuleStoreTest, loading_never_rewrites_and_every_change_writes_what_is_known) {
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

TEST_F(RuleStoreTest, a_newer_file_is_left_alone_even_if_it_makes_no_sense) {
    put(file, R"({"schemaVersion":3,"rules":"anything"})");
    EXPECT_THAT(load, failsWith(store_error::UnsupportedSchemaVersion{3}));
    expectEveryChangeFails("not been loaded");
    EXPECT_THAT(listing(), testing::ElementsAre("Hopsel", "Hopsel/config.json"));
}

TEST_F(RuleStoreTest, a_corrupt_file_is_kept_and_copied_aside_and_the_copy_stays_as_it_is) {
    const std::string corrupt = R"({"schemaVersion":"3","rules":[]})";
    put(file, corrupt);
    const std::string backup = file.string() + ".corrupt-1700000000";
    onFullDisk([&] { EXPECT_THAT(load, failsWith(store_error::Corrupt{std::nullopt})); });
    EXPECT_FALSE(fs::exists(backup)) << "half a copy";
    EXPECT_THAT(load, failsWith(store_error::Corrupt{backup}));
    EXPECT_EQ(fs::status(backup).permissions(), fs::perms(0600));
    EXPECT_EQ(contents(file), corrupt);
    put(file, "worse");
    EXPECT_THAT(load, failsWith(store_error::Corrupt{std::nullopt}));
    EXPECT_EQ(contents(backup), corrupt);
    expectEveryChangeFails("not been loaded");
}

TEST_F(RuleStoreTest, what_cannot_be_read_is_an_error_of_the_storage_and_not_a_first_run) {
    put(file, twoRules);
    for (const fs::path& locked : {file, file.parent_path()}) {
        ::chmod(locked.c_str(), 0);
        asOrdinaryUser([&] { EXPECT_THROW(load(), std::system_error); });
        ::chmod(locked.c_str(), 0755);
    }
    expectEveryChangeFails("not been loaded");
}

TEST_F(RuleStoreTest, a_later_load_that_fails_keeps_the_document_and_one_without_a_file_leaves_no_trace) {
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

TEST_F(RuleStoreTest, a_disk_that_refuses_costs_neither_the_file_nor_the_rules) {
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
