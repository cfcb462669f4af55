// The adapters for macOS against a faked system, in which other programs may have written anything.
#include "app/macos/settings/interface_style.h"
#include "app/macos/settings/live_report_delivery.h"
#include "app/macos/settings/login_item_status.h"
#include "app/macos/settings/preferred_languages.h"
#include "app/macos/settings/symbolic_hot_keys.h"
#include "app/macos/settings/user_defaults_preferences.h"
#include "app/macos/settings/workspace_settings_opener.h"
#include "core/platform/macos/cf_values.h"
#include "core/rules/system_shortcut_conflict.h"
#include "support/macos/fakes/locale.h"
#include "support/macos/fakes/world.h"

#include <gmock/gmock.h>
#include <limits>
#include <nlohmann/json.hpp>

namespace hopsel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Value = CfRef<CFTypeRef>;

Value text(const char* utf8) {
    return Value::adopt(CFStringCreateWithCString(kCFAllocatorDefault, utf8, kCFStringEncodingUTF8));
}
Value number(double value) {
    return Value::adopt(CFNumberCreate(kCFAllocatorDefault, kCFNumberDoubleType, &value));
}
Value boolean(bool value) { return Value::retain(value ? kCFBooleanTrue : kCFBooleanFalse); }

template <typename... Values>
Value array(const Values&... values) {
    std::vector<const void*> pointers{values.get()...};
    return Value::adopt(CFArrayCreate(kCFAllocatorDefault, pointers.data(),
                                      static_cast<CFIndex>(pointers.size()), &kCFTypeArrayCallBacks));
}
Value dictionary(const std::vector<std::pair<const char*, const Value*>>& entries) {
    std::vector<Value> names;
    std::vector<const void*> keys, values;
    for (const auto& [name, value] : entries) {
        names.push_back(text(name));
        keys.push_back(names.back().get());
        values.push_back(value->get());
    }
    return Value::adopt(CFDictionaryCreate(kCFAllocatorDefault, keys.data(), values.data(),
                                           static_cast<CFIndex>(keys.size()), &kCFTypeDictionaryKeyCallBacks,
                                           &kCFTypeDictionaryValueCallBacks));
}
/// As the system writes it.
Value hotKey(const Value& enabled, double keyCode, double flags) {
    const Value parameters = array(number(65535), number(keyCode), number(flags));
    const Value type = text("standard");
    const Value keys = dictionary({{"parameters", &parameters}, {"type", &type}});
    return dictionary({{"enabled", &enabled}, {"value", &keys}});
}

class MacosSettings : public testing::Test {
  protected:
    ~MacosSettings() override {
        macos_fakes::setPreferredLanguages(nullptr);
        macos_fakes::reset();
        EXPECT_EQ(macos_fakes::liveObjects(), 0) << "every object is released";
        EXPECT_EQ(macos_fakes::distributedObservers(), 0U);
    }
    static void set(const char* key, const Value& value,
                    CFStringRef domain = kCFPreferencesCurrentApplication) {
        CFPreferencesSetAppValue(static_cast<CFStringRef>(text(key).get()), value.get(), domain);
    }
    static void setHotKeys(const Value& value) {
        set("AppleSymbolicHotKeys", value, CFSTR("com.apple.symbolichotkeys"));
    }
    static std::vector<bool> conflicts() {
        const auto conflicts = [](ModifierSet modifiers) {
            return system_shortcut_conflict::conflictsWithSystem({49, modifiers}, symbolic_hot_keys::read);
        };
        return {conflicts({ModifierKey::rightControl}),
                conflicts({ModifierKey::leftControl, ModifierKey::rightOption}),
                conflicts({ModifierKey::leftCommand})};
    }
};

TEST_F(MacosSettings, PreferencesHaveTheirDefaultsUntilTheyAreWrittenAndKeepNothingInMemory) {
    UserDefaultsPreferences preferences;
    EXPECT_TRUE(preferences.showCurrentSourceLabel());
    EXPECT_TRUE(preferences.engineEnabled());
    EXPECT_FALSE(preferences.onboardingCompleted());
    preferences.setShowCurrentSourceLabel(false);
    preferences.setEngineEnabled(false);
    preferences.setOnboardingCompleted(true);
    const UserDefaultsPreferences others;
    EXPECT_FALSE(others.showCurrentSourceLabel());
    EXPECT_FALSE(others.engineEnabled());
    EXPECT_TRUE(others.onboardingCompleted());
    set("engineEnabled", boolean(true));
    EXPECT_TRUE(others.engineEnabled());
}

TEST_F(MacosSettings, APreferenceOfAnotherTypeIsUnderstoodOrCountsAsFalse) {
    const UserDefaultsPreferences preferences;
    struct Case {
        Value value;
        bool read;
    };
    const Value zero = number(0);
    std::vector<Case> cases;
    cases.push_back({number(0), false});
    cases.push_back({number(1), true});
    cases.push_back({text("NO"), false});
    cases.push_back({text("0"), false});
    cases.push_back({text("True"), true});
    cases.push_back({text("perhaps"), false});
    cases.push_back({array(zero), false});
    cases.push_back({dictionary({{"engineEnabled", &zero}}), false});
    for (const Case& c : cases) {
        set("engineEnabled", c.value);
        EXPECT_EQ(preferences.engineEnabled(), c.read) << &c - cases.data();
    }
}

TEST_F(MacosSettings, HotKeysThatTheUserChangedReplaceTheStockOnes) {
    EXPECT_THAT(conflicts(), ElementsAre(true, true, false)) << "nothing was ever written";
    const Value previous = hotKey(boolean(true), 49, 0x100000);
    Value keys = dictionary({{"60", &previous}});
    setHotKeys(keys);
    EXPECT_THAT(conflicts(), ElementsAre(false, true, true));
    const Value off = hotKey(number(0), 49, 0x40000);
    const Value unrelated = hotKey(boolean(true), 49, 0x100000);
    keys = dictionary({{"60", &off}, {"61", &off}, {"64", &unrelated}});
    setHotKeys(keys);
    EXPECT_THAT(conflicts(), ElementsAre(false, false, false));
}

TEST_F(MacosSettings, AHotKeyThatIsNotWhatItShouldBeConflictsWithNothing) {
    const double infinity = std::numeric_limits<double>::infinity();
    const Value one = number(1), space = number(49), control = number(0x40000), word = text("49");
    const Value tooFew = array(one, space);
    const Value words = array(one, word, control);
    const Value noKeys = dictionary({{"parameters", &one}});
    const Value shortKeys = dictionary({{"parameters", &tooFew}});
    const Value wordKeys = dictionary({{"parameters", &words}});
    std::vector<Value> entries;
    entries.push_back(number(60));
    entries.push_back(array(one));
    entries.push_back(dictionary({}));
    entries.push_back(dictionary({{"enabled", &one}}));
    entries.push_back(dictionary({{"enabled", &one}, {"value", &one}}));
    entries.push_back(dictionary({{"enabled", &one}, {"value", &noKeys}}));
    entries.push_back(dictionary({{"enabled", &one}, {"value", &shortKeys}}));
    entries.push_back(dictionary({{"enabled", &one}, {"value", &wordKeys}}));
    entries.push_back(hotKey(text("1"), 49, 0x40000));
    entries.push_back(hotKey(boolean(true), infinity, 0x40000));
    entries.push_back(hotKey(boolean(true), -1, -1));
    entries.push_back(hotKey(boolean(true), 49, 1e300));
    for (const Value& entry : entries) {
        setHotKeys(dictionary({{"60", &entry}}));
        EXPECT_THAT(conflicts(), ElementsAre(false, true, false)) << &entry - entries.data();
    }
    for (const Value* notADictionary : {&one, &word, &tooFew}) {
        setHotKeys(*notADictionary);
        EXPECT_THAT(conflicts(), ElementsAre(true, true, false)) << "as if it were not there";
    }
}

TEST_F(MacosSettings, LanguagesComeInTheUsersOrderAndWhatIsNoneIsLeftOut) {
    EXPECT_THAT(preferredLanguages(), IsEmpty());
    macos_fakes::setPreferredLanguages(array(text("ko-KR"), number(7), text("en-US")).get());
    EXPECT_THAT(preferredLanguages(), ElementsAre("ko-KR", "en-US"));
    macos_fakes::setPreferredLanguages(text("ko").get());
    EXPECT_THAT(preferredLanguages(), IsEmpty());
}

TEST_F(MacosSettings, TheAppearanceIsToldAtOnceAndAtEveryRealChange) {
    std::vector<bool> told;
    {
        const InterfaceStyle style([&](bool isDark) { told.push_back(isDark); });
        const auto change = [](const Value& value) {
            set("AppleInterfaceStyle", value);
            macos_fakes::postDistributed(CFSTR("AppleInterfaceThemeChangedNotification"));
        };
        EXPECT_THAT(told, ElementsAre(false));
        change(text("Dark"));
        change(text("Dark"));
        change(number(1));
    }
    macos_fakes::postDistributed(CFSTR("AppleInterfaceThemeChangedNotification"));
    EXPECT_THAT(told, ElementsAre(false, true, false));
}

TEST(LoginItemStatus, WhatTheSystemSaysIsTranslatedAndTheUnknownIsUnavailable) {
    EXPECT_EQ(loginItemStatus(0), LoginItemStatus::disabled);
    EXPECT_EQ(loginItemStatus(1), LoginItemStatus::enabled);
    EXPECT_EQ(loginItemStatus(2), LoginItemStatus::requiresApproval);
    for (const long other : {3L, 4L, -1L, std::numeric_limits<long>::max()})
        EXPECT_EQ(loginItemStatus(other), LoginItemStatus::unavailable);
}

class RecordingWorkspace final : public Workspace {
  public:
    void open(const std::string& address) override { calls.push_back("open " + address); }
    void openLoginItems() override { calls.emplace_back("open login items"); }
    std::optional<std::filesystem::path> askForFile(const std::string& suggestedName) override {
        calls.push_back("ask " + suggestedName);
        return chosen;
    }
    bool write(const std::filesystem::path& file, const std::string& contents) override {
        calls.push_back("write " + file.string() + ": " + contents);
        return writes;
    }
    void reveal(const std::filesystem::path& file) override { calls.push_back("reveal " + file.string()); }
    void copyText(const std::string& text) override { calls.push_back("copy " + text); }

    std::vector<std::string> calls;
    std::optional<std::filesystem::path> chosen;
    bool writes = true;
};

TEST(SettingsLinks, LeadToThePagesOfThePermissions) {
    const auto workspace = std::make_shared<RecordingWorkspace>();
    WorkspaceSettingsOpener opener(nullptr, workspace);
    opener.openInputMonitoring();
    opener.openAccessibility();
    opener.openLoginItems();
    const std::string pages = "open x-apple.systempreferences:com.apple.preference.security?";
    EXPECT_THAT(workspace->calls, ElementsAre(pages + "Privacy_ListenEvent", pages + "Privacy_Accessibility",
                                              "open login items"));
}

TEST(ReportDelivery, ShowsTheFileOnlyIfItWasChosenAndWritten) {
    const auto workspace = std::make_shared<RecordingWorkspace>();
    LiveReportDelivery delivery(workspace);
    EXPECT_EQ(delivery.saveFile("report.txt", "text"), std::nullopt);
    workspace->chosen = "/users/me/mine.txt";
    workspace->writes = false;
    EXPECT_EQ(delivery.saveFile("report.txt", "text"), std::nullopt);
    workspace->writes = true;
    EXPECT_EQ(delivery.saveFile("report.txt", "text"), "/users/me/mine.txt");
    delivery.openMail("mailto:someone");
    delivery.openMail("file:///etc/passwd");
    EXPECT_THAT(workspace->calls,
                ElementsAre("ask report.txt", "ask report.txt", "write /users/me/mine.txt: text",
                            "ask report.txt", "write /users/me/mine.txt: text", "reveal /users/me/mine.txt",
                            "open mailto:someone"));
}

} // namespace
} // namespace hopsel
