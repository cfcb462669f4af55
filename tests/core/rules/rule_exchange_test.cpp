// Rules that leave the settings file and come back, and a file that somebody broke; on a real folder.
#include "core/rules/config_json.h"
#include "core/rules/rule_exchange.h"
#include "core/rules/rule_samples.h"
#include "core/rules/rule_store.h"
#include "core/rules/temporary_folder.h"
#include "platform/posix/posix_file_storage.h"

#include <gmock/gmock.h>

namespace hopsel {
namespace {

using samples::shortcutRule;
using samples::tapRule;
using samples::toggle;
using samples::twoRules;

class RuleExchange : public FolderTest {
  protected:
    std::shared_ptr<PosixFileStorage> storage = std::make_shared<PosixFileStorage>(folder);
    const std::filesystem::path file = folder / "config.json";
    const std::filesystem::path other = folder / "other.json";
    RuleStore store{file, storage, [] { return 1700000000; }};

    template <class Reason>
    bool refuses(const std::function<void()>& act) const {
        try {
            act();
        } catch (const StoreError& error) {
            return std::holds_alternative<Reason>(error.reason());
        }
        return false;
    }
};

TEST_F(RuleExchange, ARuleComesBackToItsPlaceAndWhatIsExportedIsTheSameDocument) {
    put(file, twoRules);
    EXPECT_TRUE(refuses<store_error::NotLoaded>([&] { store.exportTo(other); }));
    store.load();
    const std::vector<Rule> before = store.config().rules;
    store.remove("tap");
    store.insert({before[0]}, 0);
    EXPECT_EQ(store.config().rules, before);
    EXPECT_TRUE(refuses<store_error::DuplicateId>([&] { store.insert({before[1]}, 9); }));
    EXPECT_EQ(contents(file), config_json::encode({2, before}));

    store.exportTo(other);
    EXPECT_EQ(contents(other), contents(file));
    EXPECT_EQ(store.readOther(other), store.config());
    EXPECT_TRUE(refuses<store_error::WriteFailed>([&] { store.exportTo(folder); }));
    put(other, R"({"schemaVersion":3})");
    EXPECT_TRUE(refuses<store_error::UnsupportedSchemaVersion>([&] { store.readOther(other); }));
    put(other, "[");
    EXPECT_TRUE(refuses<store_error::Corrupt>([&] { store.readOther(other); }));
    EXPECT_EQ(listing(), (std::set<std::string>{"config.json", "other.json"})) << "no copy of another's file";
}

TEST_F(RuleExchange, OnlyKeysThatAreFreeComeInAndOneBadRuleRefusesAll) {
    const std::vector<Rule> here{tapRule("a"), tapRule("b", ModifierKey::rightOption)};
    const std::vector<Rule> offered{
        tapRule("x"),                                                    // is here
        tapRule("y", ModifierKey::rightOption, toggle("abc", "french")), // does something else here
        tapRule("a", ModifierKey::leftOption),                           // its identifier is taken
        tapRule("z", ModifierKey::leftOption, toggle("abc", "french")),  // twice in the file
    };
    const auto plan = rule_exchange::plan(offered, here);
    ASSERT_TRUE(plan);
    EXPECT_EQ(plan->known, std::vector<Rule>{offered[0]});
    EXPECT_EQ(plan->keyUsed, (std::vector<Rule>{offered[1], offered[3]}));
    ASSERT_EQ(plan->added.size(), 1U);
    EXPECT_EQ(plan->added[0].trigger, offered[2].trigger);
    EXPECT_NE(plan->added[0].id, "a");

    for (const Rule& bad : {tapRule("s", ModifierKey::leftShift), shortcutRule("k", {0, {}}),
                            tapRule("t", ModifierKey::leftControl, toggle("abc", "abc"))})
        EXPECT_FALSE(rule_exchange::plan({offered[2], bad}, here));
}

TEST_F(RuleExchange, ABrokenFileIsKeptWhicheverWayItGoesOn) {
    put(file, twoRules);
    store.load();
    const Config good = store.config();
    EXPECT_FALSE(store.goodCopy());
    store.keepGoodCopy();
    put(file, "broken");
    std::optional<std::string> backup;
    try {
        store.load();
    } catch (const StoreError& error) {
        backup = std::get<store_error::Corrupt>(error.reason()).backupPath;
    }
    ASSERT_TRUE(backup);
    RuleStore next{file, storage, [] { return 1700000001; }};
    ASSERT_EQ(next.goodCopy(), good);
    next.startAfresh(*next.goodCopy());
    EXPECT_EQ(contents(file), config_json::encode(good));
    EXPECT_EQ(contents(*backup), "broken");
    EXPECT_EQ(listing().size(), 3U) << "one copy of the broken file is enough";
    next.setEnabled("tap", false); // it is loaded now

    put(file, "broken again");
    EXPECT_THROW(next.load(), StoreError);
    put(file, "edited since");
    RuleStore later{file, storage, [] { return 1700000002; }};
    later.startAfresh(Config::empty());
    EXPECT_EQ(contents(file.string() + ".corrupt-1700000002"), "edited since");
    EXPECT_TRUE(later.config().rules.empty());

    put(file, "never lost");
    EXPECT_TRUE(refuses<store_error::WriteFailed>([&] { later.startAfresh(good); }))
        << "the name of the copy is taken";
    EXPECT_EQ(contents(file), "never lost");
}

} // namespace
} // namespace hopsel
