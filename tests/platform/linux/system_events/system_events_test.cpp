// Sleep, lock and session changes, from a mock of logind and from screen savers that the tests play, on buses
// of their own.
#include "platform/linux/bus/bus_address.h"
#include "platform/linux/system_events/linux_system_event_observer.h"
#include "platform/linux/system_events/lock_secure_input.h"
#include "session/private_bus.h"
#include "support/bus_links.h"
#include "support/fakes/engine_fakes.h"
#include "support/played_object.h"
#include "support/qt_waiting.h"

#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace hopsel;
using namespace hopsel::session;

namespace {

using enum SystemEvent;

constexpr const char* sessionPath = "/org/freedesktop/login1/session/c1";
constexpr const char* sessionInterface = "org.freedesktop.login1.Session";

class SystemEvents : public testing::Test {
  protected:
    SystemEvents() {
        setenv("XDG_SESSION_ID", "c1", 1);
        unsetenv("DISPLAY"); // whoever works there may lock the screen
        observer->onEvent = [this](SystemEvent event) { events.push_back(event); };
        observer->onInputSourcesChanged = [this] { ++sourceChanges; };
        startLogind();
    }
    ~SystemEvents() override {
        observer.reset();
        QDBusConnection::disconnectFromBus("mock control");
        for (const QString& saver : savers) QDBusConnection::disconnectFromBus(saver);
    }

    void startLogind() {
        ChildProcess::Options options;
        options.program = "/usr/bin/python3"; // the one that Debian's modules belong to
        options.arguments = {"-m", "dbusmock", "--system", "--template", "logind"};
        options.package = "python3-dbusmock";
        logind = std::make_unique<ChildProcess>(options);
        ASSERT_TRUE(test::runLoopUntil([&] {
            const QDBusMessage call = QDBusMessage::createMethodCall("org.freedesktop.DBus", "/",
                                                                     "org.freedesktop.DBus", "NameHasOwner")
                                      << "org.freedesktop.login1";
            return QDBusReply<bool>(control.call(call)).value();
        }));
        mock("/org/freedesktop/login1", "AddSession", {"c1", "seat0", 500U, "someone", true});
        setProperties({{"LockedHint", false}, {"Active", true}});
    }
    void mock(const QString& path, const QString& method, const QVariantList& arguments) {
        auto call = QDBusMessage::createMethodCall("org.freedesktop.login1", path,
                                                   "org.freedesktop.DBus.Mock", method);
        call.setArguments(arguments);
        const QDBusMessage reply = control.call(call);
        ASSERT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
    }
    void setProperties(const QVariantMap& values) {
        mock(sessionPath, "UpdateProperties", {sessionInterface, values});
    }
    void emitSleep(const QString& signature, const QVariant& value) {
        mock("/org/freedesktop/login1", "EmitSignal",
             {"org.freedesktop.login1.Manager", "PrepareForSleep", signature,
              QVariantList{QVariant::fromValue(QDBusVariant(value))}});
    }
    void saver(const QString& name, const QString& interface, const QVariant& isActive) {
        if (!savers.contains(name)) savers << name;
        QDBusConnection bus =
            QDBusConnection::connectToBus(QString::fromStdString(sessionBus.address()), name);
        bus.registerService(interface);
        bus.send(QDBusMessage::createSignal("/any/path", interface, "ActiveChanged") << isActive);
    }

    bool reach(const std::vector<SystemEvent>& expected) {
        return test::runLoopUntil([&] { return events.size() >= expected.size(); }) && events == expected;
    }
    /// Sleeps and wakes: what came before it in vain has been looked at when it is here.
    void expectNothing() {
        emitSleep("b", true);
        EXPECT_TRUE(reach({willSleep})) << testing::PrintToString(events);
        events.clear();
    }
    void startAndSettle() {
        observer->start();
        // The session is known once a change of it is noticed.
        ASSERT_TRUE(test::runLoopUntil([&] {
            setProperties({{"Active", false}});
            setProperties({{"Active", true}});
            return test::runLoopUntil([&] { return !events.empty() && events.back() == sessionBecameActive; },
                                      std::chrono::milliseconds(50));
        }));
        events.clear();
    }

    PrivateBus systemBus{PrivateBus::Kind::system};
    PrivateBus sessionBus;
    QDBusConnection control =
        QDBusConnection::connectToBus(QString::fromStdString(systemBus.address()), "mock control");
    std::unique_ptr<ChildProcess> logind;
    QStringList savers;
    std::shared_ptr<fakes::FakeCatalog> catalog = std::make_shared<fakes::FakeCatalog>();
    std::unique_ptr<LinuxSystemEventObserver> observer = std::make_unique<LinuxSystemEventObserver>(
        catalog, test::linkTo(systemBus.address()), test::linkTo(sessionBus.address()));
    std::vector<SystemEvent> events;
    int sourceChanges = 0;
};

TEST_F(SystemEvents, TellEachChangeOnceAndNoneThatIsNone) {
    startAndSettle();
    emitSleep("b", true);
    emitSleep("b", false);
    EXPECT_TRUE(reach({willSleep, didWake}));
    events.clear();
    setProperties({{"Active", false}, {"LockedHint", true}});
    setProperties({{"LockedHint", true}});
    setProperties({{"LockedHint", false}});
    setProperties({{"Active", true}});
    EXPECT_TRUE(reach({sessionResigned, screenLocked, screenUnlocked, sessionBecameActive}));
    events.clear();
    catalog->onSourcesChanged();
    EXPECT_EQ(sourceChanges, 1);
    emitSleep("s", "true"); // nor anything of the wrong type
    setProperties({{"Active", QStringList{"x"}}, {"LockedHint", 1}});
    expectNothing();
}

TEST_F(SystemEvents, LockWithLogindOrAScreenSaverAndUnlockWithTheLast) {
    startAndSettle();
    saver("one", "org.freedesktop.ScreenSaver", true);
    EXPECT_TRUE(reach({screenLocked}));
    saver("one", "org.gnome.ScreenSaver", true);
    saver("two", "org.xfce.ScreenSaver", true);
    setProperties({{"LockedHint", true}});
    saver("one", "org.freedesktop.ScreenSaver", false);
    saver("one", "org.gnome.ScreenSaver", false);
    setProperties({{"LockedHint", false}});
    EXPECT_TRUE(test::staysFalse([&] { return events.size() > 1; }));
    savers.removeAll("two");
    QDBusConnection::disconnectFromBus("two"); // dies without a word
    EXPECT_TRUE(reach({screenLocked, screenUnlocked}));
    events.clear();
    saver("one", "org.mate.ScreenSaver", "true");
    saver("one", "org.example.ScreenSaver", true);
    expectNothing();
}

TEST_F(SystemEvents, FindAScreenThatIsLockedAlready) {
    const auto fields = std::make_shared<fakes::FakeSecureInput>();
    LockSecureInput secureInput(fields);
    observer->onLocked = [&](bool isLocked) { secureInput.setLocked(isLocked); };
    const auto comesToBe = [&](bool isSecure) {
        return test::runLoopUntil([&] { return secureInput.isEnabled() == isSecure; });
    };
    test::PlayedObject locker(sessionBus.address(), "org.freedesktop.ScreenSaver",
                              "/org/freedesktop/ScreenSaver");
    locker.answers["GetActive"] = test::replyWith(true);
    observer->start();
    EXPECT_TRUE(comesToBe(true));
    locker.signal("/org/freedesktop/ScreenSaver", "org.freedesktop.ScreenSaver", "ActiveChanged", {false});
    EXPECT_TRUE(comesToBe(false));
    fields->enabled = true;
    EXPECT_TRUE(secureInput.isEnabled());
    fields->enabled = false;

    observer->stop();
    locker.answers["GetActive"] = test::replyWith(false);
    setProperties({{"LockedHint", true}});
    observer->start();
    EXPECT_TRUE(comesToBe(true)) << "logind knows";
    setProperties({{"LockedHint", false}});
    EXPECT_TRUE(comesToBe(false));
    observer->onLocked = nullptr;
}

TEST_F(SystemEvents, FollowLogindThroughARestartAndEndWithTheObserver) {
    startAndSettle();
    logind->kill(SIGKILL);
    logind->waitForExit(std::chrono::seconds(5));
    startLogind();
    startAndSettle();
    observer->stop();
    emitSleep("b", true);
    EXPECT_FALSE(catalog->onSourcesChanged);
    observer->start();
    observer.reset(); // replies are still on their way
    setProperties({{"Active", false}});
    EXPECT_TRUE(test::staysFalse([&] { return !events.empty(); }));
}

TEST(SystemEventsWithoutBuses, AreNoneAndWaitForNothing) {
    setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/socket", 1);
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
    setenv("XDG_RUNTIME_DIR", "/nonexistent", 1);
    setenv("DISPLAY", ":9999", 1); // where the library would start a bus
    LinuxSystemEventObserver observer(std::make_shared<fakes::FakeCatalog>(),
                                      std::make_shared<BusLink>(bus_address::system),
                                      std::make_shared<BusLink>(bus_address::session));
    observer.onEvent = [](SystemEvent) { FAIL(); };
    observer.start();
    EXPECT_FALSE(test::runLoopUntil([] { return false; }, std::chrono::milliseconds(20)));
}

} // namespace
