#include "platform/macos/keys/mac_permissions.h"
#include "platform/macos/macos_test.h"
#include "platform/macos/sources/mac_input_source_catalog.h"
#include "platform/macos/system_events/mac_system_event_observer.h"

namespace hopsel {
namespace {

using macos_fakes::postDistributed;
using testing::ElementsAre;

class FakeWorkspace final : public WorkspaceNotifications {
  public:
    void start(std::function<void(SystemEvent)> onEvent) override {
        ++starts;
        tell = std::move(onEvent);
    }
    void stop() override { tell = nullptr; }

    std::function<void(SystemEvent)> tell;
    int starts = 0;
};

class MacSystem : public MacosTest {
  protected:
    MacSystem() {
        auto fake = std::make_unique<FakeWorkspace>();
        workspace = fake.get();
        observer = std::make_unique<MacSystemEventObserver>(catalog, std::move(fake));
        observer->onEvent = [this](SystemEvent event) { events.push_back(event); };
        observer->onInputSourcesChanged = [this] { ++sourceChanges; };
    }
    void TearDown() override {
        observer.reset();
        catalog.reset();
        MacosTest::TearDown();
    }
    static void everythingHappens() {
        postDistributed(CFSTR("com.apple.screenIsLocked"));
        postDistributed(CFSTR("com.apple.screenIsUnlocked"));
        postDistributed(kTISNotifyEnabledKeyboardInputSourcesChanged);
        runFor(0);
    }

    std::shared_ptr<MacInputSourceCatalog> catalog = std::make_shared<MacInputSourceCatalog>();
    FakeWorkspace* workspace = nullptr;
    std::unique_ptr<MacSystemEventObserver> observer;
    std::vector<SystemEvent> events;
    int sourceChanges = 0;
};

TEST_F(MacSystem, EventsAreToldOnceBetweenStartAndStop) {
    everythingHappens();
    EXPECT_TRUE(events.empty());
    for (int round = 0; round < 2; ++round) {
        observer->start();
        observer->start();
        EXPECT_EQ(workspace->starts, round + 1);
        workspace->tell(SystemEvent::willSleep);
        everythingHappens();
        EXPECT_THAT(events, ElementsAre(SystemEvent::willSleep, SystemEvent::screenLocked,
                                        SystemEvent::screenUnlocked));
        EXPECT_EQ(sourceChanges, 1);

        observer->stop();
        observer->stop();
        everythingHappens();
        EXPECT_EQ(events.size(), 3U);
        EXPECT_EQ(sourceChanges, 1);
        EXPECT_FALSE(workspace->tell);
        events.clear();
        sourceChanges = 0;
    }
}

TEST_F(MacSystem, NotificationsThatAreUnderWayAtTheReleaseAreIgnored) {
    const DistributedNotification toldFirst(CFSTR("com.apple.screenIsLocked"), [this] { observer.reset(); });
    observer->start();
    postDistributed(CFSTR("com.apple.screenIsLocked"));
    EXPECT_EQ(observer, nullptr);
    EXPECT_TRUE(events.empty());
}

TEST_F(MacSystem, ScheduledFunctionsRunInOrderAlsoInsideOneAnother) {
    std::vector<int> order;
    schedule([&] {
        order.push_back(1);
        schedule([&] { order.push_back(3); });
        runFor(0.005);
        runFor(0.005);
        order.push_back(4);
    });
    schedule([&] { order.push_back(2); });
    EXPECT_TRUE(order.empty());
    runFor(0);
    EXPECT_THAT(order, ElementsAre(1, 2, 3, 4));
}

TEST_F(MacSystem, PermissionsAreCheckedWithoutAPromptAndRequestedWithOne) {
    MacPermissions permissions;
    auto& stream = macos_fakes::eventStream();
    stream.isTrusted = false;
    EXPECT_FALSE(permissions.accessibilityGranted());
    EXPECT_TRUE(permissions.inputMonitoringGranted());
    EXPECT_EQ(stream.trustPrompts + stream.listenPrompts, 0);
    EXPECT_FALSE(permissions.wasAsked());
    EXPECT_FALSE(permissions.requestAccessibility());
    EXPECT_TRUE(permissions.wasAsked());
    EXPECT_TRUE(permissions.requestInputMonitoring());
    EXPECT_EQ(stream.trustPrompts, 1);
    EXPECT_EQ(stream.listenPrompts, 1);
}

} // namespace
} // namespace hopsel
