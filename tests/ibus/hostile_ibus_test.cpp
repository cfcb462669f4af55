// A daemon, an address file or a socket that does what the real ones never should.
#include "core/platform/input_source_switcher.h"
#include "core/platform/linux/ibus/ibus_address.h"
#include "core/platform/linux/main_loop.h"
#include "core/platform/linux/xkb/platform_errors.h"
#include "ibus/fake_ibus.h"
#include "ibus/ibus_rig.h"
#include "session/file_descriptor.h"
#include "session/temporary_folder.h"
#include "support/qt_waiting.h"

#include <QDBusVariant>
#include <QSocketNotifier>
#include <gmock/gmock.h>
#include <set>
#include <sys/socket.h>
#include <sys/un.h>

namespace hopsel {
namespace {

using test::FakeIbus;
using test::runLoopUntil;

const QString ibusName = "org.freedesktop.IBus";
const QString failed = "org.freedesktop.DBus.Error.Failed";
const test::FakeEngine hangul{"hangul", "Hangul", "ko", "default", ""};
const test::FakeEngine english{"xkb:us::eng", "", "en", "-display us;reboot", "a,b"};

class HostileIbus : public testing::Test {
  protected:
    HostileIbus() { test::IbusRig::setEngines("['hangul', 'xkb:us::eng']"); }
    ~HostileIbus() override { QDBusConnection::disconnectFromBus("owner"); }

    bool become(bool isInCharge) { return test::IbusRig::become(isInCharge, *sources); }

    test::IbusRig session;
    QDBusConnection owner =
        QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), "owner");
    FakeIbus fake;
    std::shared_ptr<IbusInputSources> sources = session.makeSources();
    LiveInputSourceService service{sources, uptimeSeconds, runFor};
};

TEST_F(HostileIbus, AnswersThatNoDaemonGivesKeepItOutOfChargeUntilItGivesOthers) {
    const QVariantList engines = FakeIbus::variants({hangul});
    const auto good = FakeIbus::returning(FakeIbus::variant(hangul));
    const auto none = FakeIbus::failing(failed, "No global engine.");
    const struct {
        FakeIbus::Reply current, engines;
    } cases[] = {
        {good, FakeIbus::failing(failed, "no")},
        {good, FakeIbus::returning("hangul")},
        {good, FakeIbus::returning(QVariantList())},
        {good, FakeIbus::returning(QVariantList{"hangul", 7, QVariantList{FakeIbus::variant(hangul)}})},
        {good, FakeIbus::returning(QVariant::fromValue(QDBusVariant(engines)))},
        {FakeIbus::returning("hangul"), FakeIbus::returning(engines)},
        {FakeIbus::returning(QVariant::fromValue(QDBusVariant(7))), FakeIbus::returning(engines)},
        {FakeIbus::failing("org.freedesktop.DBus.Error.UnknownMethod", ""), FakeIbus::returning(engines)},
        {[](const QDBusMessage&) { return QDBusMessage(); }, FakeIbus::returning(engines)},
    };
    owner.registerService(ibusName);
    for (const auto& tested : cases) {
        fake.replies = {{"Get", tested.current}, {"GetEnginesByNames", tested.engines}};
        fake.callCount = 0;
        sources = session.makeSources();
        ASSERT_TRUE(runLoopUntil([&] { return sources->retry(), fake.callCount >= 2; }));
        EXPECT_TRUE(test::staysFalse([&] { return sources->isInCharge(); }, std::chrono::milliseconds(20)))
            << &tested - cases;
    }
    fake.behave({hangul});
    owner.unregisterService(ibusName);
    owner.registerService(ibusName);
    EXPECT_TRUE(become(true));
    fake.replies["Get"] = none;
    sources = session.makeSources();
    EXPECT_TRUE(become(true));
    EXPECT_EQ(sources->currentID(), std::nullopt);
}

TEST_F(HostileIbus, ListIsBoundedCleanAndWithoutDuplicates) {
    std::string names = "['', 'two words', 'bell\\a', 'e0', 'e0'";
    QList<test::FakeEngine> engines{{"", "", "", "", ""}, {"two words", "", "", "", ""}};
    for (int i = 0; i < 5000; ++i) {
        names += ", 'e" + std::to_string(i) + "'";
        engines << test::FakeEngine{"e" + QString::number(i), QString(999, 'x') + "\n", "ko\n", "us", ""};
    }
    engines[2].name = "";
    engines[3].name = "one\ntwo\u202e three";
    engines << engines[3];
    test::IbusRig::setEngines(names + "]");
    fake.behave(engines);
    fake.replies["Get"] = FakeIbus::returning(FakeIbus::variant(hangul));
    owner.registerService(ibusName);
    ASSERT_TRUE(become(true));
    const std::vector<InputSourceInfo> listed = sources->enabledKeyboardSources();
    std::set<std::string> ids;
    for (const InputSourceInfo& source : listed) {
        ids.insert(source.id);
        EXPECT_LE(source.name.size(), 64U);
        EXPECT_THAT(source.languages, testing::ElementsAre("ko"));
    }
    EXPECT_EQ(ids.size(), listed.size());
    EXPECT_THAT(listed.size(), testing::AllOf(testing::Gt(30U), testing::Le(64U)));
    EXPECT_EQ(listed[0].name, "e0");
    EXPECT_EQ(listed[1].name, "one two three");
}

TEST_F(HostileIbus, RefusalEndsTheWaitForTheLastSelectionOnly) {
    const struct {
        FakeIbus::Reply reply;
        SelectResult expected;
    } cases[] = {
        {FakeIbus::failing(failed, "Cannot find engine hangul."), select_result::NotFound{}},
        {FakeIbus::failing(failed, "Set global engine failed: timed out"),
         select_result::Failed{platform_error::frameworkRefused}},
        {[](const QDBusMessage&) { return QDBusMessage(); }, select_result::Selected{}},
    };
    fake.behave({english, hangul});
    owner.registerService(ibusName);
    ASSERT_TRUE(become(true));
    for (const auto& tested : cases) {
        fake.replies["SetGlobalEngine"] = tested.reply;
        const SwitchOutcome outcome = service.switchTo("ibus:hangul");
        EXPECT_EQ(outcome.result, tested.expected);
        EXPECT_FALSE(outcome.verified);
        EXPECT_EQ(outcome.latencyMs < 400, tested.expected != SelectResult(select_result::Selected{}));
    }
    EXPECT_FALSE(service.switchTo("ibus:xkb:us::eng").verified) << "is current, but was asked to leave";

    QList<QDBusMessage> calls;
    fake.replies["SetGlobalEngine"] = [&calls](const QDBusMessage& call) {
        calls << call;
        return calls.size() == 1 ? QDBusMessage() : calls[0].createErrorReply(failed, "Cannot find engine.");
    };
    for (const char* id : {"ibus:hangul", "ibus:xkb:us::eng"})
        EXPECT_EQ(sources->select(id), SelectResult(select_result::Selected{}));
    ASSERT_TRUE(runLoopUntil([&] { return calls.size() == 2; }));
    EXPECT_TRUE(test::staysFalse([&] { return sources->refusal().has_value(); }));

    fake.replies["SetGlobalEngine"] = fake.obeying();
    EXPECT_TRUE(service.switchTo("ibus:hangul").verified);
    EXPECT_TRUE(service.switchTo("ibus:xkb:us::eng").verified) << "and its layout is none";
}

TEST_F(HostileIbus, NameHeldByFcitxIsNotIbus) {
    fake.behave({hangul});
    QDBusConnection sameProgram = session.bus();
    sameProgram.registerService("org.fcitx.Fcitx5");
    owner.registerService(ibusName);
    EXPECT_TRUE(runLoopUntil([&] { return sources->retry(), !sources->isInCharge(); }));
    EXPECT_TRUE(test::staysFalse([&] { return sources->retry(), sources->isInCharge(); }));
    sameProgram.unregisterService("org.fcitx.Fcitx5");
    EXPECT_TRUE(become(true));
    sameProgram.registerService("org.fcitx.Fcitx5");
    EXPECT_TRUE(become(false));
}

/// A socket that accepts whom it has room for, and says `greeting` or nothing.
class OddSocket {
  public:
    OddSocket(const std::string& path, int room)
        : listener_(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0)) {
        name_.sun_family = AF_UNIX;
        path.copy(name_.sun_path, sizeof name_.sun_path - 1);
        EXPECT_EQ(bind(listener_.get(), address(), sizeof name_), 0);
        EXPECT_EQ(listen(listener_.get(), room), 0);
    }
    void fill() {
        do {
            clients_.emplace_back(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0));
        } while (connect(clients_.back().get(), address(), sizeof name_) == 0);
    }
    void greet(const std::string& greeting) {
        notifier_ = std::make_unique<QSocketNotifier>(listener_.get(), QSocketNotifier::Read);
        QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this, greeting] {
            clients_.emplace_back(accept(listener_.get(), nullptr, nullptr));
            send(clients_.back().get(), greeting.data(), greeting.size(), MSG_NOSIGNAL);
        });
    }
    std::size_t clientCount() const { return clients_.size(); }

  private:
    const sockaddr* address() const { return reinterpret_cast<const sockaddr*>(&name_); }

    sockaddr_un name_{};
    session::FileDescriptor listener_;
    std::vector<session::FileDescriptor> clients_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

TEST_F(HostileIbus, SocketThatHangsOrTalksNonsenseHoldsUpNobody) {
    const session::TemporaryFolder folder;
    const std::string path = folder.path() / "socket", touched = folder.path() / "touched";
    const std::string good = qgetenv("IBUS_ADDRESS").toStdString();
    OddSocket silent(path + "1", 100), full(path + "2", 0), talking(path + "3", 100);
    full.fill();
    talking.greet("OK 0123456789abcdef0123456789abcdef\r\nAGREE_UNIX_FD\r\n" + std::string(300, '\xFF'));
    fake.behave({hangul});
    const double start = uptimeSeconds();
    for (const std::string& address :
         {"unix:path=" + path + "1", "unix:path=" + path + "2", "unix:path=" + path + "3",
          "unix:path=" + path + "4", "unixexec:path=/usr/bin/touch,argv1=" + touched, std::string("unix:"),
          std::string("x"), "unix:path=" + std::string(400, 'x')}) {
        setenv("IBUS_ADDRESS", address.c_str(), 1);
        owner.unregisterService(ibusName);
        owner.registerService(ibusName);
        EXPECT_TRUE(test::staysFalse([&] { return sources->retry(), sources->isInCharge(); },
                                     std::chrono::milliseconds(60)));
    }
    EXPECT_LT(uptimeSeconds() - start, 5);
    EXPECT_GT(talking.clientCount(), 0U);
    EXPECT_FALSE(std::filesystem::exists(touched));
    setenv("IBUS_ADDRESS", good.c_str(), 1);
    owner.unregisterService(ibusName);
    owner.registerService(ibusName);
    EXPECT_TRUE(become(true));
}

TEST(IbusAddress, OnlyWholeLinesOfTheFileCount) {
    const QByteArray line = "IBUS_ADDRESS=unix:abstract=/tmp/dbus%2dx,guid=1";
    const QString address = "unix:abstract=/tmp/dbus%2dx,guid=1";
    EXPECT_EQ(ibus_address::inFile("# made by\n" + line + "\nIBUS_DAEMON_PID=1\n"), address);
    EXPECT_EQ(ibus_address::inFile(line + ";tcp:host=x\n"), address);
    for (qsizetype length = 0; length <= line.size(); ++length)
        EXPECT_EQ(ibus_address::inFile(line.left(length)), std::nullopt) << "still being written";
    for (const QByteArray& junk :
         {QByteArray("IBUS_ADDRESS=\n"), QByteArray(3000, '\n'), QByteArray(99, '\0'),
          QByteArray("IBUS_ADDRESS=unix:path=\xFF\n"), QByteArray("IBUS_ADDRESS=unix:path,abstract,=,,\n"),
          QByteArray("IBUS_ADDRESS=tcp:host=localhost,port=1\n")})
        EXPECT_EQ(ibus_address::inFile(junk), std::nullopt) << junk.toStdString();
}

} // namespace
} // namespace hopsel
