// Everything that listens and asks on a bus, on buses that lie, die, hang and come late.
#include "platform/linux/bus/every_type.h"

#include "platform/linux/accessibility/atspi_secure_input.h"
#include "platform/linux/activation/activation_server.h"
#include "platform/linux/bus/bus_name.h"
#include "platform/linux/desktop/desktop_appearance.h"
#include "platform/linux/desktops/gnome_sources.h"
#include "platform/linux/desktops/kde_layouts.h"
#include "platform/linux/fcitx/fcitx_input_sources.h"
#include "platform/linux/ibus/ibus_input_sources.h"
#include "platform/linux/switch_keys/desktop_switch_keys.h"
#include "platform/linux/system_events/linux_system_event_observer.h"
#include "platform/linux/tray/status_notifier_watch.h"
#include "session/private_bus.h"
#include "session/temporary_folder.h"
#include "support/bus_links.h"
#include "support/fakes/engine_fakes.h"

#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>

namespace hopsel::test {
namespace {

using session::PrivateBus;

/// Answers every call to one name with the same values.
class Liar final : public PlayedObject {
  public:
    Liar(const std::string& address, const QString& name) : PlayedObject(address, name, "/") {}
    bool handleMessage(const QDBusMessage& call, const QDBusConnection&) override {
        ++asked;
        send(call.createReply(lie));
        return true;
    }
    QVariantList lie;
    int asked = 0;
};

struct Subject {
    explicit Subject(const std::shared_ptr<BusLink>& link, const std::shared_ptr<BusLink>& system)
        : bus(link),
          kde(bus),
          gnome(bus),
          fcitx(bus),
          ibus(bus, log),
          accessibility(bus, log),
          tray(bus, [] {}),
          keys(bus, {nullptr, nullptr, nullptr, [] { return std::vector<ShortcutKey>(); }}),
          observer(std::make_shared<fakes::FakeCatalog>(), system, bus),
          appearance(bus),
          activation(bus) {
        observer.onEvent = [this](SystemEvent event) { events.push_back(event); };
        activation.onActivate = [this](const QString&) { ++activations; };
        observer.start();
        appearance.onChange = [this](design::Appearance told) { looks = told; };
        appearance.start();
    }
    void retry() {
        for (InputFramework* framework : std::initializer_list<InputFramework*>{&kde, &gnome, &fcitx, &ibus})
            framework->retry();
        accessibility.retry();
    }

    std::shared_ptr<BusLink> bus;
    fakes::RecordingLog log;
    KdeLayouts kde;
    GnomeSources gnome;
    FcitxInputSources fcitx;
    IbusInputSources ibus;
    AtspiSecureInput accessibility;
    StatusNotifierWatch tray;
    DesktopSwitchKeys keys;
    LinuxSystemEventObserver observer;
    DesktopAppearance appearance;
    ActivationServer activation;
    std::vector<SystemEvent> events;
    int activations = 0;
    design::Appearance looks = design::Appearance::light;
};

const QStringList names{"org.kde.keyboard",
                        "org.gnome.Shell",
                        "org.fcitx.Fcitx5",
                        "org.freedesktop.IBus",
                        "org.a11y.Bus",
                        "org.a11y.atspi.Registry",
                        "org.kde.StatusNotifierWatcher",
                        "org.freedesktop.login1",
                        "org.freedesktop.portal.Desktop",
                        "org.freedesktop.ScreenSaver",
                        "org.xfce.ScreenSaver"};

const struct {
    const char* path;
    const char* interface;
    const char* member;
} signalsHeard[] = {
    {"/Layouts", "org.kde.KeyboardLayouts", "layoutChanged"},
    {"/Layouts", "org.kde.KeyboardLayouts", "layoutListChanged"},
    {"/ca/desrt/dconf/Writer/user", "ca.desrt.dconf.Writer", "Notify"},
    {"/controller", "org.fcitx.Fcitx.Controller1", "InputMethodGroupsChanged"},
    {"/kimpanel", "org.kde.kimpanel.inputmethod", "UpdateProperty"},
    {"/StatusNotifierItem", "org.kde.StatusNotifierItem", "NewIcon"},
    {"/org/freedesktop/IBus", "org.freedesktop.IBus", "GlobalEngineChanged"},
    {"/org/freedesktop/IBus", "org.freedesktop.IBus", "RegistryChanged"},
    {"/org/a11y/bus", "org.freedesktop.DBus.Properties", "PropertiesChanged"},
    {"/x", "org.a11y.atspi.Event.Object", "StateChanged"},
    {"/x", "org.a11y.atspi.Event.Window", "Deactivate"},
    {"/StatusNotifierWatcher", "org.kde.StatusNotifierWatcher", "StatusNotifierHostRegistered"},
    {"/org/freedesktop/login1", "org.freedesktop.login1.Manager", "PrepareForSleep"},
    {"/x", "org.freedesktop.DBus.Properties", "PropertiesChanged"},
    {"/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings", "SettingChanged"},
    {"/x", "org.freedesktop.ScreenSaver", "ActiveChanged"},
    {"/x", "org.xfce.ScreenSaver", "ActiveChanged"},
    {"/org/freedesktop/DBus", "org.freedesktop.DBus", "NameOwnerChanged"}};

class Bus : public testing::Test {
  protected:
    Bus() { setenv("IBUS_ADDRESS", bus.address().c_str(), 1); }
    ~Bus() override { unsetenv("IBUS_ADDRESS"); }
    void makeSubject() { subject = std::make_unique<Subject>(linkTo(bus.address()), linkTo(bus.address())); }
    /// Everything before it has been heard when it is.
    bool hears(const PlayedObject& portal, bool isDark) const {
        const auto wanted = isDark ? design::Appearance::dark : design::Appearance::light;
        return runLoopUntil([&] {
            portal.signal("/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings",
                          "SettingChanged",
                          {"org.freedesktop.appearance", "color-scheme", boxed(isDark ? 1U : 2U)});
            return subject->looks == wanted;
        });
    }

    PrivateBus bus;
    std::unique_ptr<Subject> subject;
};

TEST_F(Bus, EveryTypeToEverySubscriptionAndFromEveryAnswerHarmsNothing) {
    std::map<QString, std::unique_ptr<Liar>> liars;
    for (const QString& name : names) liars[name] = std::make_unique<Liar>(bus.address(), name);
    // As if it were right, so that there are two more buses and a session to listen to.
    liars["org.a11y.Bus"]->lie = {QString::fromStdString(bus.address())};
    liars["org.freedesktop.login1"]->lie = {QVariant::fromValue(QDBusObjectPath("/x"))};
    makeSubject();
    ASSERT_TRUE(runLoopUntil([&] {
        subject->retry();
        return subject->accessibility.state() != SecureInputState::unavailable;
    }));
    QString display = qEnvironmentVariable("DISPLAY");
    const QString ourName = "app.hopsel.Hopsel.display" + display.remove(u':').section(u'.', 0, 0);
    bool isDark = false;
    for (const QVariantList& values : everyType()) {
        auto call = QDBusMessage::createMethodCall(ourName, "/app/hopsel/Hopsel",
                                                   "org.freedesktop.Application", "Activate");
        call.setArguments(values);
        for (const auto& [name, liar] : liars) {
            for (const auto& heard : signalsHeard)
                liar->signal(heard.path, heard.interface, heard.member, values);
            liar->lie = values;
        }
        liars["org.gnome.Shell"]->send(call);
        // A new owner is asked everything.
        for (const auto& [name, liar] : liars) liar->disappear();
        for (const auto& [name, liar] : liars) liar->appear();
        subject->retry();
        ASSERT_TRUE(hears(*liars["org.freedesktop.portal.Desktop"], isDark = !isDark));
    }
    EXPECT_GT(liars["org.kde.keyboard"]->asked, 100);
    EXPECT_FALSE(subject->accessibility.isEnabled());
    EXPECT_EQ(subject->activations, 1) << "once it was as it should be";
    EXPECT_FALSE(subject->kde.isInCharge());
}

TEST_F(Bus, StrangersAreNotHeard) {
    const PlayedObject portal(bus.address(), "org.freedesktop.portal.Desktop", "/");
    const PlayedObject saver(bus.address(), "org.freedesktop.ScreenSaver", "/");
    const PlayedObject stranger(bus.address(), "", "/");
    makeSubject();
    ASSERT_TRUE(hears(portal, true));
    stranger.signal("/any", "org.freedesktop.ScreenSaver", "ActiveChanged", {true});
    stranger.signal("/org/freedesktop/login1", "org.freedesktop.login1.Manager", "PrepareForSleep", {true});
    stranger.signal("/org/freedesktop/DBus", "org.freedesktop.DBus", "NameOwnerChanged",
                    {"org.freedesktop.ScreenSaver", "", ":1.1"});
    EXPECT_TRUE(staysFalse([&] { return !subject->events.empty(); }));
    saver.signal("/any", "org.freedesktop.ScreenSaver", "ActiveChanged", {true});
    EXPECT_TRUE(runLoopUntil([&] { return subject->events == std::vector{SystemEvent::screenLocked}; }));
}

TEST_F(Bus, EverythingComesBackWithARestartedBus) {
    setenv("IBUS_ADDRESS", "unix:path=/nonexistent", 1);
    const auto play = [this](const QString& name) {
        auto played = std::make_unique<PlayedObject>(bus.address(), name, "/");
        played->answers["getLayoutsList"] =
            replyWith(inVariant(QList<Row<QString, QString, QString>>{{"us", "", "English (US)"}}));
        played->answers["getLayout"] = replyWith(0U);
        played->answers["GetAddress"] = replyWith(QString::fromStdString(bus.address()));
        played->answers["Get"] = replyWith(boxed(true));
        return played;
    };
    makeSubject();
    for (int round = 0; round < 2; ++round) {
        const auto portal = play("org.freedesktop.portal.Desktop");
        const auto tray = play("org.kde.StatusNotifierWatcher");
        const auto keyboard = play("org.kde.keyboard");
        const auto launcher = play("org.a11y.Bus");
        const auto saver = play("org.freedesktop.ScreenSaver");
        EXPECT_TRUE(hears(*portal, true));
        EXPECT_TRUE(
            runLoopUntil([&] { return subject->kde.isInCharge() && subject->tray.hasHost() == true; }));
        EXPECT_TRUE(runLoopUntil([&] {
            subject->accessibility.retry();
            return subject->accessibility.state() == SecureInputState::watching;
        }));
        saver->signal("/any", "org.freedesktop.ScreenSaver", "ActiveChanged", {true});
        EXPECT_TRUE(runLoopUntil(
            [&] { return !subject->events.empty() && subject->events.back() == SystemEvent::screenLocked; }));
        EXPECT_TRUE(hears(*portal, false));
        bus.kill();
        EXPECT_TRUE(runLoopUntil([&] {
            return !subject->kde.isInCharge() && subject->tray.hasHost() == false &&
                   subject->accessibility.state() == SecureInputState::unavailable &&
                   subject->events.back() == SystemEvent::screenUnlocked;
        }));
        if (round == 0) bus.restart();
    }
}

TEST_F(Bus, OneThatIsNotThereIsAwaitedAsleep) {
    session::TemporaryFolder folder;
    const auto runtime = folder.path() / "user" / "runtime";
    BusLink late([&] { return QString::fromStdString("unix:path=" + (runtime / "bus").string()); });
    BusLink none([] { return QString(); });
    EXPECT_FALSE(late.isPolling() || none.isPolling());
    std::filesystem::create_directories(runtime);
    const auto socket = QString::fromStdString(bus.address()).section(u'=', 1).section(u',', 0, 0);
    std::filesystem::rename(socket.toStdString(), runtime / "bus");
    EXPECT_TRUE(runLoopUntil([&] { return late.isConnected(); }));
    EXPECT_FALSE(late.isPolling());
    bus.kill();
    EXPECT_TRUE(runLoopUntil([&] { return !late.isConnected(); }));
    EXPECT_TRUE(late.isPolling()) << "the socket has stayed, and nothing tells when it is listened to";
    std::filesystem::remove(runtime / "bus");
    EXPECT_TRUE(runLoopUntil([&] { return !late.isPolling(); }));
}

TEST_F(Bus, OneThatHangsHoldsNothingUpAndIsThereWhenItGoesOn) {
    const PlayedObject portal(bus.address(), "org.freedesktop.portal.Desktop", "/");
    bus.process().kill(SIGSTOP);
    const double start = session::monotonicSeconds();
    makeSubject();
    EXPECT_TRUE(runLoopUntil([&] { return subject->tray.hasHost() == false; }))
        << "the other kind may be shown";
    EXPECT_LT(session::monotonicSeconds() - start, 5);
    bus.process().kill(SIGCONT);
    EXPECT_TRUE(hears(portal, true));
}

} // namespace
} // namespace hopsel::test
