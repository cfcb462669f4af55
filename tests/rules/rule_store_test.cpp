// The settings store on a real folder, through the real storage.
#include "core/rules/rule_store.h"

#include "core/platform/posix/posix_file_storage.h"
#include "core/rules/config_json.h"
#include "rules/rule_samples.h"
#include "rules/temporary_folder.h"

#include <functional>
#include <gmock/gmock.h>
#include <memory>
#include <system_error>

namespace hopsel {
namespace {

namespace fs = std::filesystem;
using samples::shortcutRule;
using samples::tapRule;
using samples::twoRules;
using samples::twoRulesWith;
using testing::ElementsAre;
using testing::IsEmpty;
using Reason = StoreError::Reason;

std::optional<Reason> reasonOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const StoreError& error) {
        EXPECT_STRNE(error.what(), "");
        return error.reason();
    }
    return std::nullopt;
}

class RuleStoreTest : public testing::Test {
  protected:
    TemporaryFolder folder;
    std::shared_ptr<PosixFileStorage> storage = std::make_shared<PosixFileStorage>(folder.path());
    RuleStore store{RuleStore::defaultFileURL(*storage), storage, [] { return 1700000000; }};
    const fs::path file = folder / "Hopsel/config.json";

    void given(const std::string& text) {
        fs::create_directories(file.parent_path());
        put(file, text);
    }
    Config onDisk() const { return config_json::decode(contents(file)); }

    /// Each kind of change fails for this reason, and leaves the file, its folder and the memory as they are.
    void expectEveryChangeFails(const std::function<bool(const Reason&)>& expected) {
        const Config before = store.config();
        const std::string text = contents(file);
        const auto listing = folder.listing();
        const std::function<void()> changes[] = {
            [&] { store.add(tapRule("new", ModifierKey::leftOption)); },
            [&] { store.update(tapRule("tap", ModifierKey::leftControl)); },
            [&] { store.remove("keys"); },
            [&] { store.setEnabled("tap", false); },
        };
        for (const auto& change : changes) {
            const auto reason = reasonOf(change);
            ASSERT_TRUE(reason);
            EXPECT_TRUE(expected(*reason)) << StoreError(*reason).what();
            EXPECT_EQ(store.config(), before);
        }
        EXPECT_EQ(contents(file), text);
        EXPECT_EQ(folder.listing(), listing);
    }
};

bool isNotLoaded(const Reason& reason) { return std::holds_alternative<store_error::NotLoaded>(reason); }

TEST_F(RuleStoreTest, first_run_has_no_rules_and_leaves_no_trace_until_the_first_change) {
    EXPECT_FALSE(store.isLoaded());
    store.load();
    EXPECT_TRUE(store.isLoaded());
    EXPECT_EQ(store.config(), Config::empty());
    EXPECT_THAT(folder.listing(), IsEmpty());

    EXPECT_EQ(store.add(tapRule("tap")), tapRule("tap"));
    EXPECT_THAT(folder.listing(), ElementsAre("Hopsel", "Hopsel/config.json"));
    EXPECT_EQ(contents(file), config_json::encode({1, {tapRule("tap")}}));
}

TEST_F(RuleStoreTest, version_two_lasts_as_long_as_there_is_a_shortcut_rule) {
    store.load();
    store.add(tapRule("tap"));
    store.add(shortcutRule("keys"));
    EXPECT_EQ(onDisk().schemaVersion, 2);
    store.setEnabled("keys", false);
    EXPECT_EQ(onDisk(),
              (Config{2, {tapRule("tap"), shortcutRule("keys", {49, {ModifierKey::leftShift}}, false)}}));
    store.update(tapRule("keys", ModifierKey::leftOption));
    EXPECT_EQ(onDisk(), (Config{1, {tapRule("tap"), tapRule("keys", ModifierKey::leftOption)}}));
    EXPECT_EQ(store.config(), onDisk());
    store.update(shortcutRule("tap"));
    store.remove("tap");
    EXPECT_EQ(onDisk(), (Config{1, {tapRule("keys", ModifierKey::leftOption)}}));
}

TEST_F(RuleStoreTest, loading_never_rewrites_and_the_next_change_drops_what_is_unknown) {
    const std::string text = twoRulesWith(":2,", R"(:-3,"note":1,)");
    given(text);
    store.load();
    EXPECT_EQ(store.config().schemaVersion, -3);
    EXPECT_EQ(contents(file), text);
    store.remove("keys");
    EXPECT_EQ(contents(file), config_json::encode({1, {tapRule("tap")}}));
}

TEST_F(RuleStoreTest, a_newer_file_is_left_alone_even_if_it_makes_no_sense) {
    given(R"({"schemaVersion":3,"rules":"anything"})");
    EXPECT_EQ(reasonOf([&] { store.load(); }), Reason(store_error::UnsupportedSchemaVersion{3}));
    expectEveryChangeFails(isNotLoaded);
    EXPECT_THAT(folder.listing(), ElementsAre("Hopsel", "Hopsel/config.json"));
}

TEST_F(RuleStoreTest, a_corrupt_file_is_copied_aside_once_a_second_and_kept) {
    given(R"({"schemaVersion":"3","rules":[]})");
    const std::string backup = file.string() + ".corrupt-1700000000";
    EXPECT_EQ(reasonOf([&] { store.load(); }), Reason(store_error::Corrupt{backup}));
    EXPECT_EQ(contents(backup), contents(file));
    EXPECT_EQ(reasonOf([&] { store.load(); }), Reason(store_error::Corrupt{std::nullopt}));
    EXPECT_FALSE(store.isLoaded());
    expectEveryChangeFails(isNotLoaded);

    put(file, twoRules); // the user repaired it
    store.load();
    EXPECT_EQ(store.add(tapRule("new", ModifierKey::leftOption)).id, "new");
}

TEST_F(RuleStoreTest, what_cannot_be_read_is_an_error_of_the_storage_and_not_a_first_run) {
    fs::create_directories(file);
    EXPECT_THROW(store.load(), std::system_error);
    fs::remove(file);
    ASSERT_EQ(::mkfifo(file.c_str(), 0666), 0);
    EXPECT_THROW(store.load(), std::system_error);
    fs::remove(file);
    put(file, twoRules);
    ::chmod(file.c_str(), 0);
    {
        const OrdinaryUser user;
        EXPECT_THROW(store.load(), std::system_error);
    }
    EXPECT_FALSE(store.isLoaded());
    expectEveryChangeFails(isNotLoaded);
}

TEST_F(RuleStoreTest, a_later_load_that_fails_keeps_the_document) {
    given(twoRules);
    store.load();
    const Config before = store.config();
    for (const std::string& text : {std::string("{"), twoRulesWith(":2,", ":4,")}) {
        put(file, text);
        EXPECT_THROW(store.load(), StoreError);
        EXPECT_EQ(store.config(), before);
        EXPECT_TRUE(store.isLoaded());
    }
    fs::remove_all(file.parent_path());
    store.load();
    EXPECT_EQ(store.config(), Config::empty());
}

TEST_F(RuleStoreTest, changes_that_do_not_fit_are_refused_for_the_first_reason) {
    const Rule invalid = tapRule("tap", ModifierKey::leftShift);
    EXPECT_EQ(reasonOf([&] { store.add(invalid); }), Reason(store_error::NotLoaded{}));
    given(twoRules);
    store.load();
    const Config before = store.config();
    const Reason unknown = store_error::NotFound{"x"};
    EXPECT_EQ(reasonOf([&] { store.add(invalid); }), Reason(store_error::DuplicateId{"tap"}));
    EXPECT_EQ(reasonOf([&] { store.update(tapRule("x", ModifierKey::leftShift)); }), unknown);
    EXPECT_EQ(reasonOf([&] { store.remove("x"); }), unknown);
    EXPECT_EQ(reasonOf([&] { store.setEnabled("x", true); }), unknown);
    EXPECT_EQ(reasonOf([&] { store.update(invalid); }),
              Reason(store_error::Invalid{{rule_issue::DisallowedTrigger{ModifierKey::leftShift}}}));
    EXPECT_EQ(reasonOf([&] { store.add(tapRule("new")); }),
              Reason(store_error::Invalid{{rule_issue::DuplicateTrigger{"tap"}}}));
    EXPECT_EQ(store.config(), before);
    EXPECT_EQ(contents(file), twoRules);
}

TEST_F(RuleStoreTest, rules_that_only_a_text_editor_can_make_can_be_enabled_and_removed) {
    // Two rules of one identifier, the first of them with a trigger that could not be added.
    std::string text = twoRulesWith(R"("id":"keys")", R"("id":"tap")");
    text.replace(text.find("rightCommand"), 12, "leftShift");
    given(text);
    store.load();
    store.setEnabled("tap", false);
    EXPECT_FALSE(onDisk().rules[0].enabled);
    EXPECT_TRUE(onDisk().rules[1].enabled);
    store.remove("tap");
    EXPECT_EQ(onDisk(), Config::empty());
}

TEST_F(RuleStoreTest, a_disk_that_refuses_costs_neither_the_file_nor_the_rules) {
    given(twoRules);
    store.load();
    const auto saysWhy = [](const char* why) {
        return [why](const Reason& reason) {
            const auto* failed = std::get_if<store_error::WriteFailed>(&reason);
            return failed != nullptr && failed->description.find(why) != std::string::npos;
        };
    };
    {
        const FullDisk full;
        expectEveryChangeFails(saysWhy("File too large"));
    }
    ::chmod(file.parent_path().c_str(), 0555);
    {
        const OrdinaryUser user;
        expectEveryChangeFails(saysWhy("Permission denied"));
    }
    ::chmod(file.parent_path().c_str(), 0755);
    Rule unwritable = tapRule("new", ModifierKey::leftOption);
    unwritable.action = samples::toggle("a", "\xff");
    EXPECT_TRUE(saysWhy("UTF-8")(*reasonOf([&] { store.add(unwritable); })));
    EXPECT_EQ(store.config(), config_json::decode(twoRules));

    store.remove("keys"); // nothing is stuck
    EXPECT_EQ(onDisk(), (Config{1, {tapRule("tap")}}));
}

} // namespace
} // namespace hopsel
