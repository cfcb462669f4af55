// The macOS layer against the real frameworks: runs on a Mac only, also on one where nobody is logged in and
// nothing is permitted. It changes nothing: no source is switched to, no prompt is shown.
#include "core/platform/log.h"
#include "core/platform/tap_failure.h"
#include "platform/macos/base/main_loop.h"
#include "platform/macos/desktop/user_defaults_preferences.h"
#include "platform/macos/keys/active_tap.h"
#include "platform/macos/keys/listen_tap.h"
#include "platform/macos/keys/mac_permissions.h"
#include "platform/macos/keys/tap_list.h"
#include "platform/macos/sources/mac_input_source_catalog.h"
#include "platform/macos/system_events/mac_system_event_observer.h"

#include <gtest/gtest.h>

namespace hopsel {
namespace {

class NoLog final : public Log {
  public:
    void write(Level, std::string_view, std::string_view) override {}
};

template <class Source>
bool starts(Source& source) {
    try {
        source.start();
        return true;
    } catch (const TapFailure&) {
        return false;
    }
}

TEST(Live, SourcesAreListedAndTheCurrentOneIsAmongThem) {
    MacInputSourceCatalog catalog;
    const std::vector<InputSourceInfo> sources = catalog.enabledKeyboardSources();
    ASSERT_FALSE(sources.empty());
    const std::optional<std::string> current = catalog.currentID();
    ASSERT_TRUE(current);
    bool isListed = false;
    for (const InputSourceInfo& source : sources) {
        EXPECT_FALSE(source.id.empty() || source.name.empty() || source.type.empty());
        isListed = isListed || source.id == *current;
    }
    EXPECT_TRUE(isListed) << *current;
    EXPECT_EQ(catalog.select("app.hopsel.none"), SelectResult(select_result::NotFound{}));
}

TEST(Live, PreferencesAreWrittenAndRead) {
    const CFStringRef domain = CFSTR("app.hopsel.Hopsel.test");
    UserDefaultsPreferences preferences(domain);
    for (const bool on : {true, false}) {
        preferences.setOnboardingCompleted(on);
        EXPECT_EQ(UserDefaultsPreferences(domain).onboardingCompleted(), on);
    }
}

TEST(Live, TapsHearKeysOrAreRefused) {
    const auto permissions = std::make_shared<MacPermissions>();
    NoLog log;
    ListenTap listen(permissions);
    ActiveTap filter(log, permissions);
    const bool isTrusted = permissions->accessibilityGranted();
    EXPECT_EQ(starts(listen), permissions->inputMonitoringGranted() || isTrusted);
    EXPECT_EQ(starts(filter), isTrusted);
    if (isTrusted) {
        EXPECT_EQ(tap_list::hearsKeys(kCGEventTapOptionDefault, 0b1100'0000'0000), true);
    }
    listen.check();
    filter.check();
    runFor(0);
    filter.stop();
    listen.stop();
    EXPECT_EQ(tap_list::hearsKeys(kCGEventTapOptionDefault, 0b1100'0000'0000), std::nullopt);
}

TEST(Live, UptimeRunsAndTheLoopWaitsForIt) {
    const double start = uptimeSeconds();
    EXPECT_GT(start, 1);
    waitFor(0.02);
    EXPECT_GE(uptimeSeconds() - start, 0.02);
    bool didRun = false;
    schedule([&] { didRun = true; });
    while (!didRun) runFor(1);
}

TEST(Live, ObserversComeAndGo) {
    for (int round = 0; round < 3; ++round) {
        const auto catalog = std::make_shared<MacInputSourceCatalog>();
        MacSystemEventObserver observer(catalog, makeWorkspaceNotifications());
        observer.start();
        runFor(0);
    }
}

} // namespace
} // namespace hopsel
