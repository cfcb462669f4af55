#include "platform/linux/desktop/settings_preferences.h"

#include "platform/linux/desktop/desktop_rig.h"

using hopsel::SettingsPreferences;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

class Preferences : public hopsel::FolderTest {
  protected:
    std::filesystem::path file = folder / "hopsel" / "preferences.ini";
    hopsel::fakes::RecordingLog log;
    SettingsPreferences preferences{log, file};
};

TEST_F(Preferences, StoreEachChangeAtOnceAndFollowOtherProcesses) {
    EXPECT_TRUE(preferences.showCurrentSourceLabel() && preferences.engineEnabled());
    EXPECT_FALSE(preferences.onboardingCompleted());
    EXPECT_TRUE(listing().empty()) << "reading leaves nothing behind";
    hopsel::put(file, "[General]\nengineEnabled=false\nlater=x\n");
    EXPECT_FALSE(preferences.engineEnabled());
    preferences.setOnboardingCompleted(true);
    EXPECT_EQ(hopsel::contents(file), "[General]\nengineEnabled=false\nlater=x\nonboardingCompleted=true\n");
    for (const std::string value :
         {"", "perhaps", "2", "true, false", "@Invalid()", "@Variant(\\0\\0\\x7f)"}) {
        hopsel::put(
            file, std::string("engineEnabled=").append(value).append("\nonboardingCompleted=").append(value));
        EXPECT_TRUE(preferences.engineEnabled()) << value;
        EXPECT_FALSE(preferences.onboardingCompleted()) << value;
    }
    EXPECT_THAT(log.lines, testing::IsEmpty());
}

TEST_F(Preferences, ADamagedFileIsCopiedAsideOnceBeforeTheFirstWrite) {
    for (const std::string& damaged :
         {std::string("engineEnabled=false\nhalf a li"), std::string("engineEnabled=false\n\0\xff", 22),
          "engineEnabled=false\n" + std::string(2 << 20, '=')}) {
        std::filesystem::remove_all(file.parent_path());
        hopsel::put(file, damaged);
        log.lines.clear();
        EXPECT_TRUE(preferences.engineEnabled());
        EXPECT_EQ(hopsel::contents(file), damaged) << "looking changes nothing";
        preferences.setOnboardingCompleted(true);
        preferences.setShowCurrentSourceLabel(false);
        EXPECT_EQ(hopsel::contents(file.string() + ".damaged"), damaged);
        EXPECT_EQ(hopsel::contents(file),
                  "[General]\nonboardingCompleted=true\nshowCurrentSourceLabel=false\n");
        EXPECT_THAT(log.lines, ElementsAre(HasSubstr("preferences.ini.damaged")));
    }
}

TEST_F(Preferences, WhatTheDiskRefusesHoldsForThisRunAndIsMadeUpForLater) {
    preferences.setEngineEnabled(false);
    hopsel::onFullDisk([&] { preferences.setOnboardingCompleted(true); });
    EXPECT_EQ(hopsel::contents(file), "[General]\nengineEnabled=false\n");
    EXPECT_TRUE(preferences.onboardingCompleted());
    EXPECT_THAT(log.lines, ElementsAre(HasSubstr("Preferences: not saved: ")));
    preferences.setShowCurrentSourceLabel(false);
    EXPECT_THAT(hopsel::contents(file), HasSubstr("onboardingCompleted=true"));
}

} // namespace
