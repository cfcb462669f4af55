// Start-up over a played platform: what the system tells reaches the engine, and what the user chose is kept.
#include "app/app_delegate.h"

#include "core/rules/rule_store.h"
#include "session/temporary_folder.h"
#include "support/fakes/engine_rig.h"
#include "support/fakes/played_platform.h"
#include "support/qt_waiting.h"

#include "ui/onboarding/onboarding_view.h"

#include <QApplication>
#include <algorithm>
#include <chrono>
#include <fstream>
#include <gmock/gmock.h>

namespace hopsel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using enum ModifierKey;

class Delegate : public testing::Test {
  protected:
    Delegate() {
        RuleStore store(RuleStore::defaultFileURL(PosixFileStorage(folder.path())),
                        std::make_shared<PosixFileStorage>(folder.path()), [] { return 0; });
        store.load();
        store.add(fakes::tapRule("7A4C0A52-0D5C-4E0E-9E39-3F1B0C7C2B11", rightCommand, "A", "B"));
        stored->completed = true;
    }

    AppDelegate::Launch launch() {
        auto instance = std::make_unique<fakes::OnlyInstance>();
        instance->isTaken = isTaken;
        delegate = std::make_unique<AppDelegate>(
            std::move(instance),
            [this]() -> std::unique_ptr<Platform> {
                if (isImpossible) throw std::runtime_error("no display");
                auto made = std::make_unique<fakes::PlayedPlatform>(folder.path());
                platform = made.get();
                platform->stored = stored;
                return made;
            },
            how, std::chrono::milliseconds(1));
        return delegate->didFinishLaunching();
    }
    static std::vector<std::string> windows() {
        std::vector<std::string> shown;
        for (const QWidget* window : QApplication::topLevelWidgets()) {
            if (!window->isVisible() || window->windowType() != Qt::Window) continue;
            const auto parts = window->findChildren<QWidget*>();
            const bool isIntroduction = std::any_of(parts.begin(), parts.end(), [](const QWidget* part) {
                return dynamic_cast<const OnboardingView*>(part) != nullptr;
            });
            shown.emplace_back(isIntroduction ? "introduction" : "settings");
        }
        return shown;
    }

    session::TemporaryFolder folder;
    std::shared_ptr<fakes::FakePreferences> stored = std::make_shared<fakes::FakePreferences>();
    AppDelegate::Start how = AppDelegate::Start::byHand;
    bool isTaken = false;
    bool isImpossible = false;
    fakes::PlayedPlatform* platform = nullptr;
    std::unique_ptr<AppDelegate> delegate;
};

TEST_F(Delegate, StartsNothingBesideAnotherCopyOrWhereNothingCanWork) {
    isTaken = true;
    EXPECT_EQ(launch(), AppDelegate::Launch::alreadyRunning);
    EXPECT_EQ(platform, nullptr);
    isTaken = false;
    isImpossible = true;
    EXPECT_EQ(launch(), AppDelegate::Launch::impossible);
    delegate->willTerminate();
}

TEST_F(Delegate, HandsOnWhatTheSystemTells) {
    ASSERT_EQ(launch(), AppDelegate::Launch::running);
    ASSERT_TRUE(platform->system.isStarted && platform->frontmost.isStarted);
    platform->tap(rightCommand);
    EXPECT_THAT(platform->service->switches, ElementsAre("B"));

    for (const SystemEvent event :
         {SystemEvent::willSleep, SystemEvent::didWake, SystemEvent::screenLocked,
          SystemEvent::screenUnlocked, SystemEvent::sessionResigned, SystemEvent::sessionBecameActive}) {
        platform->key(rightCommand, true);
        platform->system.onEvent(event);
        platform->key(rightCommand, false);
        EXPECT_THAT(platform->service->switches, SizeIs(1)) << static_cast<int>(event);
    }
    EXPECT_THAT(platform->recovered, SizeIs(6));

    platform->frontmost.onChange("com.vmware.fusion");
    platform->tap(rightCommand);
    EXPECT_THAT(platform->guestKeys->sent, SizeIs(1));
    EXPECT_THAT(platform->service->switches, SizeIs(1));
    platform->frontmost.onChange("org.example.editor");
    platform->tap(rightCommand);
    EXPECT_THAT(platform->service->switches, ElementsAre("B", "A"));

    platform->service->available.erase("B");
    platform->system.onInputSourcesChanged();
    platform->tap(rightCommand);
    EXPECT_THAT(platform->service->switches, SizeIs(2)) << "a source that is gone is not switched to";

    delegate->willTerminate();
    EXPECT_FALSE(platform->source->isStarted);
}

TEST_F(Delegate, ShowsWindowsToWhoStartedItAndNothingAtLogin) {
    launch();
    EXPECT_THAT(windows(), IsEmpty()) << "there may be a panel";
    platform->tellTray(TrayKind::none);
    EXPECT_THAT(windows(), ElementsAre("settings"));
    delegate.reset();

    how = AppDelegate::Start::inBackground;
    launch();
    platform->tellTray(TrayKind::none);
    EXPECT_THAT(windows(), IsEmpty());
    platform->reopen();
    EXPECT_THAT(windows(), ElementsAre("settings"));
    delegate.reset();

    std::filesystem::remove_all(folder.path() / "Hopsel");
    stored->completed = false;
    launch();
    platform->tellTray(TrayKind::none);
    EXPECT_THAT(windows(), IsEmpty());
    platform->reopen();
    EXPECT_THAT(windows(), ElementsAre("introduction")) << "whoever starts it is new to it";
}

TEST_F(Delegate, FollowsTheSettingsFileAndClearsWhatAKilledWriterLeft) {
    const auto leftover = folder.path() / "Hopsel/.hopsel-abcdefghijkl";
    std::ofstream(leftover) << "half a";
    launch();
    EXPECT_FALSE(std::filesystem::exists(leftover));
    RuleStore editor(RuleStore::defaultFileURL(PosixFileStorage(folder.path())),
                     std::make_shared<PosixFileStorage>(folder.path()), [] { return 0; });
    editor.load();
    editor.add(fakes::tapRule("2", leftControl, "A", "B"));
    EXPECT_TRUE(test::runLoopUntil([this] {
        platform->tap(leftControl);
        return !platform->service->switches.empty();
    }));
    EXPECT_THAT(platform->logged.lines, ElementsAre(testing::HasSubstr("by another program")));
}

TEST_F(Delegate, RetriesOnlyWhileSomethingIsBroken) {
    RuleStore store(RuleStore::defaultFileURL(PosixFileStorage(folder.path())),
                    std::make_shared<PosixFileStorage>(folder.path()), [] { return 0; });
    store.load();
    store.add(fakes::shortcutRule("B2", {96, {}}, "A", "B")); // so that there is a filter
    launch();
    const auto lose = [](auto& tap) {
        tap.refuses = true;
        tap.onDisabled(false);
    };
    const struct {
        const char* what;
        std::function<void()> breaks, mends;
    } cases[] = {
        {"what the platform looks after", [&] { platform->isBroken = true; },
         [&] { platform->isBroken = false; }},
        {"listening", [&] { lose(*platform->source); }, [&] { platform->source->refuses = false; }},
        {"the filter", [&] { lose(*platform->filter); }, [&] { platform->filter->refuses = false; }},
    };
    for (const auto& [what, breaks, mends] : cases) {
        SCOPED_TRACE(what);
        ASSERT_TRUE(test::runLoopUntil([&] { return !delegate->isRetrying(); }));
        const int before = platform->retries;
        EXPECT_TRUE(test::staysFalse([&] { return platform->retries > before; }));
        breaks();
        EXPECT_TRUE(test::runLoopUntil([&] { return platform->retries > before + 3; }));
        mends();
        EXPECT_TRUE(test::runLoopUntil([&] { return !delegate->isRetrying(); }));
        EXPECT_TRUE(platform->source->isStarted && platform->filter->isStarted);
    }
    platform->isBroken = true;
    ASSERT_TRUE(test::runLoopUntil([&] { return delegate->isRetrying(); }));
    delegate->willTerminate();
    EXPECT_TRUE(test::staysFalse([&] { return delegate->isRetrying(); }));
}

TEST_F(Delegate, LeavesTheEngineOffIfTheUserSwitchedItOff) {
    ASSERT_EQ(launch(), AppDelegate::Launch::running);
    EXPECT_TRUE(platform->source->isStarted);
    platform->command(R"({"command": "pause"})", [](const std::string&) {});
    EXPECT_FALSE(platform->source->isStarted);
    delegate.reset();
    ASSERT_EQ(launch(), AppDelegate::Launch::running);
    EXPECT_FALSE(platform->source->isStarted);
    platform->system.onEvent(SystemEvent::didWake);
    EXPECT_EQ(platform->source->starts, 0);
}

} // namespace
} // namespace hopsel
