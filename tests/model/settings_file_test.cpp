// The settings file between this program, others and the disk: what is saved, said, taken in and kept aside.
#include "core/rules/temporary_folder.h"
#include "model/settings_file_watch.h"
#include "model/texts/l10n.h"
#include "support/fakes/model_rig.h"
#include "support/qt_waiting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hopsel {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class SettingsFile : public testing::Test, protected fakes::ModelRig {
  protected:
    SettingsFile() {
        l10n::setLanguage(L10nLanguage::en);
        addStoredRule();
        launch();
    }
    std::string said() const { return model->settingsNotice() ? noticeText(*model->settingsNotice()) : ""; }
    const std::string id() const { return model->rules().front().id; }
};

TEST_F(SettingsFile, AChangeThatCannotBeSavedSaysWhyAndWhatToDoAndCanBeTriedAgain) {
    onFullDisk([&] { EXPECT_FALSE(model->setRuleEnabled(id(), false)); });
    EXPECT_THAT(said(), testing::AllOf(HasSubstr("not in force"), HasSubstr("no room left on the disk")));
    EXPECT_THAT(log.lines, ElementsAre(testing::StartsWith("error Settings: a change was not saved")));
    model->dismissSettingsNotice();
    ::chmod(folder.path().c_str(), 0555);
    asOrdinaryUser([&] { model->trySavingAgain(); });
    ::chmod(folder.path().c_str(), 0755);
    EXPECT_THAT(said(), HasSubstr("The folder " + folder.path().string() + " may not be written"));
    EXPECT_TRUE(model->rules()[0].enabled);
    addStoredRule(trigger::ModifierTap{ModifierKey::leftOption}); // another program, meanwhile
    model->trySavingAgain();
    EXPECT_FALSE(model->rules()[0].enabled);
    EXPECT_EQ(model->rules().size(), 2U);
    EXPECT_TRUE(model->setRuleEnabled(id(), true));
    model->trySavingAgain();
    EXPECT_TRUE(model->rules()[0].enabled) << "there was nothing left to try";

    using settings_notice::SaveFailed;
    const auto errnoText = [](int number) {
        return noticeText(SaveFailed{"words", {number, std::generic_category()}, "/x"});
    };
    EXPECT_THAT(errnoText(EMFILE), HasSubstr("Too many files are open"));
    EXPECT_THAT(errnoText(EDQUOT), HasSubstr("no room left"));
    EXPECT_THAT(errnoText(EROFS), HasSubstr("/x may not be written"));
    EXPECT_THAT(errnoText(EIO), HasSubstr("The system says: words"));
}

TEST_F(SettingsFile, WhatAnotherProgramWroteCountsAtOnceAndIsNeverWrittenOverUnread) {
    addStoredRule(trigger::ModifierTap{ModifierKey::leftOption});
    model->settingsFileChanged();
    EXPECT_THAT(calls, Contains("engine apply 2"));
    EXPECT_THAT(said(), HasSubstr("changed outside"));
    model->dismissSettingsNotice();
    EXPECT_EQ(said(), "");

    put(file, "{ half a");
    model->settingsFileChanged();
    EXPECT_THAT(said(), HasSubstr("cannot be read"));
    EXPECT_EQ(model->rules().size(), 2U);
    EXPECT_TRUE(model->removeRule(id()));
    EXPECT_THAT(said(), HasSubstr(file.string() + ".corrupt-1700000000"));
    EXPECT_EQ(contents(file.string() + ".corrupt-1700000000"), "{ half a");

    const std::string ours = contents(file);
    put(file, R"({"schemaVersion":9,"rules":[]})");
    EXPECT_FALSE(model->removeRule(id())) << "noticed without a word from anyone";
    EXPECT_EQ(model->statusLine(), StatusLine::configProblem);
    EXPECT_EQ(model->storeProblem(), StoreProblem(store_problem::NewerVersion{9}));
    EXPECT_THAT(contents(file), HasSubstr(":9"));
    EXPECT_THAT(log.lines, Contains(HasSubstr("newer than this program")));
    put(file, ours);
    model->settingsFileChanged();
    EXPECT_TRUE(model->removeRule(id()));
    EXPECT_THAT(model->rules(), IsEmpty());
}

TEST_F(SettingsFile, AFileThatCouldNotBeReadAtTheStartCountsOnceItIsRepaired) {
    const std::string good = contents(file);
    put(file, "{");
    launch();
    ASSERT_TRUE(model->storeProblem());
    model->settingsFileChanged();
    ASSERT_TRUE(model->storeProblem());
    put(file, good);
    model->settingsFileChanged();
    EXPECT_EQ(model->statusLine(), StatusLine::ok);
    EXPECT_TRUE(model->canEditRules());
}

TEST(SettingsFileWatch, TellsEachWayInWhichAFileBecomesAnotherAndNothingElse) {
    const session::TemporaryFolder folder;
    const fs::path file = folder.path() / "data/Hopsel/config.json";
    const fs::path elsewhere = folder.path() / "dots/config.json";
    int told = 0;
    const SettingsFileWatch watch(file, std::make_shared<PosixFileStorage>(folder.path()), [&] { ++told; });
    const auto isTold = [&] { return test::runLoopUntil([&] { return std::exchange(told, 0) > 0; }); };
    put(file, "made with its folder");
    EXPECT_TRUE(isTold());
    put(file, "written in place");
    EXPECT_TRUE(isTold());
    put(folder.path() / "data/Hopsel/new", "put in its place");
    fs::rename(folder.path() / "data/Hopsel/new", file);
    EXPECT_TRUE(isTold());
    put(elsewhere, "kept elsewhere");
    fs::remove(file);
    fs::create_symlink(elsewhere, file);
    EXPECT_TRUE(isTold());
    for (const char* text : {"replaced there", "and again"}) {
        put(folder.path() / "dots/new", text);
        fs::rename(folder.path() / "dots/new", elsewhere);
        EXPECT_TRUE(isTold()) << text;
    }
    fs::remove_all(file.parent_path());
    EXPECT_TRUE(isTold());
    put(folder.path() / "data/other", "somebody else's");
    EXPECT_TRUE(test::staysFalse([&] { return told > 0; })) << "of no interest";
    put(file, "made anew");
    EXPECT_TRUE(isTold());
}

} // namespace
} // namespace hopsel
