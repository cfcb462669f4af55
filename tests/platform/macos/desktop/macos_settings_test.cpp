// The adapters for macOS against a faked system, in which other programs may have written anything.
#include "core/rules/system_shortcut_conflict.h"
#include "platform/macos/base/cf_values.h"
#include "platform/macos/desktop/interface_style.h"
#include "platform/macos/desktop/live_report_delivery.h"
#include "platform/macos/desktop/login_item_status.h"
#include "platform/macos/desktop/user_defaults_preferences.h"
#include "platform/macos/switch_keys/symbolic_hot_keys.h"
#include "support/macos/fakes/world.h"

#include <gmock/gmock.h>
#include <limits>
#include <nlohmann/json.hpp>

namespace hopsel {
namespace {

using testing::ElementsAre;
using testing::Return;
using Json = nlohmann::json;
using Value = CfRef<CFTypeRef>;

Value valueOf(const Json& json) {
    if (json.is_boolean()) return Value::retain(json.get<bool>() ? kCFBooleanTrue : kCFBooleanFalse);
    if (json.is_string()) return Value::retain(cf_values::string(json.get<std::string>()).get());
    if (json.is_number()) {
        const auto number = json.get<double>();
        return Value::adopt(CFNumberCreate(kCFAllocatorDefault, kCFNumberDoubleType, &number));
    }
    std::vector<Value> held;
    std::vector<const void*> keys, values;
    for (const auto& [key, value] : json.items()) {
        keys.push_back(held.emplace_back(valueOf(key)).get());
        values.push_back(held.emplace_back(valueOf(value)).get());
    }
    const auto count = static_cast<CFIndex>(keys.size());
    if (json.is_array())
        return Value::adopt(CFArrayCreate(kCFAllocatorDefault, values.data(), count, &kCFTypeArrayCallBacks));
    return Value::adopt(CFDictionaryCreate(kCFAllocatorDefault, keys.data(), values.data(), count,
                                           &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
}
/// As the system writes it.
Json hotKey(const Json& enabled, const Json& keyCode, const Json& flags) {
    return {{"enabled", enabled}, {"value", {{"parameters", {65535, keyCode, flags}}, {"type", "standard"}}}};
}

class MacosSettings : public testing::Test {
  protected:
    ~MacosSettings() override {
        macos_fakes::resetPreferences();
        EXPECT_EQ(macos_fakes::liveObjects(), 0) << "every object is released";
        EXPECT_EQ(macos_fakes::distributedObservers(), 0U);
    }
    static void set(const char* key, const Json& value,
                    CFStringRef domain = kCFPreferencesCurrentApplication) {
        CFPreferencesSetAppValue(cf_values::string(key).get(), valueOf(value).get(), domain);
    }
    static std::vector<bool> conflictsWith(const Json& hotKeys) {
        set("AppleSymbolicHotKeys", hotKeys, CFSTR("com.apple.symbolichotkeys"));
        std::vector<bool> result;
        for (const ModifierSet modifiers : {ModifierSet{ModifierKey::rightControl},
                                            {ModifierKey::leftControl, ModifierKey::rightOption},
                                            {ModifierKey::leftCommand}})
            result.push_back(
                system_shortcut_conflict::conflictsWithSystem({49, modifiers}, symbolic_hot_keys::read));
        return result;
    }
};

TEST_F(MacosSettings, PreferencesHaveTheirDefaultsUntilTheyAreWrittenAndKeepNothingInMemory) {
    UserDefaultsPreferences preferences;
    EXPECT_TRUE(preferences.showCurrentSourceLabel() && preferences.engineEnabled());
    EXPECT_FALSE(preferences.onboardingCompleted() || preferences.passesThroughLayout());
    set("passThroughLayout", "YES"); // as "defaults write" leaves it
    EXPECT_TRUE(preferences.passesThroughLayout());
    preferences.setShowCurrentSourceLabel(false);
    preferences.setOnboardingCompleted(true);
    const UserDefaultsPreferences others;
    EXPECT_TRUE(!others.showCurrentSourceLabel() && others.onboardingCompleted());
    // What others wrote is understood, or counts as false.
    const std::pair<Json, bool> cases[] = {{0, false},
                                           {1, true},
                                           {"NO", false},
                                           {"True", true},
                                           {"perhaps", false},
                                           {Json::array({1}), false},
                                           {Json::object(), false}};
    for (const auto& [value, expected] : cases) {
        set("engineEnabled", value);
        EXPECT_EQ(preferences.engineEnabled(), expected) << value;
    }
}

TEST_F(MacosSettings, HotKeysThatTheUserChangedReplaceTheStockOnesAndWhatIsNoneConflictsWithNothing) {
    const Json off = hotKey(0, 49, 0x40000), others = hotKey(true, 49, 0x100000);
    EXPECT_THAT(conflictsWith(Json::object()), ElementsAre(true, true, false)) << "nothing was ever written";
    EXPECT_THAT(conflictsWith({{"60", others}}), ElementsAre(false, true, true));
    EXPECT_THAT(conflictsWith({{"60", off}, {"61", off}, {"64", others}}), ElementsAre(false, false, false));

    const Json malformed[] = {60,
                              Json::array({1}),
                              Json::object(),
                              {{"enabled", 1}},
                              {{"enabled", 1}, {"value", 1}},
                              {{"enabled", 1}, {"value", {{"parameters", 1}}}},
                              {{"enabled", 1}, {"value", {{"parameters", {1, 49}}}}},
                              hotKey(true, "49", 0x40000),
                              hotKey("1", 49, 0x40000),
                              hotKey(true, std::numeric_limits<double>::infinity(), 0x40000),
                              hotKey(true, -1, -1),
                              hotKey(true, 49, 1e300)};
    for (const Json& entry : malformed)
        EXPECT_THAT(conflictsWith({{"60", entry}}), ElementsAre(false, true, false)) << entry;
    for (const Json& noDictionary : {Json(1), Json("49"), Json::array({1, 49})})
        EXPECT_THAT(conflictsWith(noDictionary), ElementsAre(true, true, false)) << "as if it were not there";
}

TEST_F(MacosSettings, TheAppearanceIsToldAtOnceAndAtEveryRealChange) {
    std::vector<bool> told;
    {
        const InterfaceStyle style([&](bool isDark) { told.push_back(isDark); });
        for (const Json& value : {Json("Dark"), Json("Dark"), Json(1)}) {
            set("AppleInterfaceStyle", value);
            macos_fakes::postDistributed(CFSTR("AppleInterfaceThemeChangedNotification"));
        }
    }
    EXPECT_THAT(told, ElementsAre(false, true, false));
}

TEST(LoginItemStatus, WhatTheSystemSaysIsTranslatedAndTheUnknownIsUnavailable) {
    for (const bool wasTried : {false, true}) {
        EXPECT_EQ(loginItemStatus(0, wasTried), LoginItemStatus::disabled);
        EXPECT_EQ(loginItemStatus(1, wasTried), LoginItemStatus::enabled);
        EXPECT_EQ(loginItemStatus(2, wasTried), LoginItemStatus::requiresApproval);
        for (const long other : {4L, -1L})
            EXPECT_EQ(loginItemStatus(other, wasTried), LoginItemStatus::unavailable);
    }
    EXPECT_EQ(loginItemStatus(3, false), LoginItemStatus::disabled)
        << "the first registration is yet to come";
    EXPECT_EQ(loginItemStatus(3, true), LoginItemStatus::unavailable);
}

class MockWorkspace : public Workspace {
  public:
    using File = std::filesystem::path;
    MOCK_METHOD(void, open, (const std::string&), (override));
    MOCK_METHOD(void, openLoginItems, (), (override));
    MOCK_METHOD(std::optional<File>, askForFile, (const std::string&), (override));
    MOCK_METHOD(bool, write, (const File&, const std::string&), (override));
    MOCK_METHOD(void, reveal, (const File&), (override));
    MOCK_METHOD(void, copyText, (const std::string&), (override));
};

TEST(ReportDelivery, ShowsTheFileOnlyIfItWasChosenAndWritten) {
    const std::filesystem::path mine = "/users/me/mine.txt";
    const auto workspace = std::make_shared<testing::StrictMock<MockWorkspace>>();
    LiveReportDelivery delivery(workspace);
    EXPECT_CALL(*workspace, askForFile("report.txt"))
        .WillOnce(Return(std::nullopt))
        .WillRepeatedly(Return(mine));
    EXPECT_CALL(*workspace, write(mine, "text")).WillOnce(Return(false)).WillOnce(Return(true));
    EXPECT_CALL(*workspace, reveal(mine));
    for (const bool isSaved : {false, false, true})
        EXPECT_EQ(delivery.saveFile("report.txt", "text").has_value(), isSaved);
    EXPECT_CALL(*workspace, open("mailto:someone"));
    delivery.openMail("mailto:someone");
    delivery.openMail("file:///etc/passwd");
}

} // namespace
} // namespace hopsel
