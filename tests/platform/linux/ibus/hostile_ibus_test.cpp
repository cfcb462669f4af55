// A daemon, an address file or a socket that does what the real ones never should.
#include "platform/linux/ibus/fake_ibus.h"
#include "platform/linux/ibus/ibus_address.h"
#include "platform/linux/ibus/ibus_rig.h"
#include "support/framework_watch.h"

#include <QDBusVariant>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <set>

namespace hopsel::test {
namespace {

const FakeEngine hangul{"hangul", "Hangul", "ko", "default", ""};
const FakeEngine english{"xkb:us::eng", "", "en", "-display us;reboot", "a,b"};
const Answer silence = [](const QDBusMessage&) { return QDBusMessage(); };

class HostileIbus : public testing::Test {
  protected:
    HostileIbus() {
        IbusRig::setEngines("['hangul', 'xkb:us::eng']");
        owner.disappear();
    }
    bool become(bool isInCharge) { return IbusRig::become(isInCharge, *sources); }
    void restart() {
        owner.disappear();
        owner.appear();
    }

    IbusRig session;
    PlayedObject owner{session.busAddress(), "org.freedesktop.IBus", "/"};
    FakeIbus fake;
    std::shared_ptr<IbusInputSources> sources = session.makeSources();
    LiveInputSourceService service{sources, uptimeSeconds, runFor};
};

TEST_F(HostileIbus, AnswersThatNoDaemonGivesKeepItOutOfChargeUntilItGivesOthers) {
    const QVariant engines = FakeIbus::variants({hangul});
    const Answer good = replyWith(FakeIbus::variant(hangul));
    const struct {
        Answer current, engines;
    } cases[] = {
        {good, replyWithError()},
        {good, replyWith("hangul")},
        {good, replyWith(QVariantList())},
        {good, replyWith(QVariantList{"hangul", 7, QVariantList{FakeIbus::variant(hangul)}})},
        {good, replyWith(QVariant::fromValue(QDBusVariant(engines)))},
        {replyWith("hangul"), replyWith(engines)},
        {replyWith(QVariant::fromValue(QDBusVariant(7))), replyWith(engines)},
        {silence, replyWith(engines)},
        {[](const auto& call) { return call.createErrorReply("org.example.OtherError", ""); },
         replyWith(engines)},
    };
    owner.appear();
    for (const auto& tested : cases) {
        fake.answers = {{"Get", tested.current}, {"GetEnginesByNames", tested.engines}};
        fake.calls.clear();
        sources = session.makeSources();
        ASSERT_TRUE(retryUntil(*sources, [&] { return fake.calls.size() == 2; }));
        EXPECT_TRUE(staysFalse([&] { return sources->isInCharge(); }, std::chrono::milliseconds(20)))
            << &tested - cases;
    }
    fake.behave({hangul});
    restart();
    EXPECT_TRUE(become(true));
    fake.answers["Get"] = replyWithError("No global engine.");
    restart();
    EXPECT_TRUE(runLoopUntil([&] { return !sources->currentID().has_value(); }));
    EXPECT_TRUE(become(true));
    EXPECT_EQ(sources->currentID(), std::nullopt);
}

TEST_F(HostileIbus, ListIsBoundedCleanAndWithoutDuplicates) {
    std::string names = "['', 'two words', 'bell\\a', 'e0', 'e0'";
    QList<FakeEngine> engines{{"", "", "", "", ""}, {"two words", "", "", "", ""}};
    for (int i = 0; i < 5000; ++i) {
        names += ", 'e" + std::to_string(i) + "'";
        engines << FakeEngine{"e" + QString::number(i), QString(999, 'x') + "\n", "ko\n", "us", ""};
    }
    engines[2].name = "";
    engines[3].name = "one\ntwo\u202e three";
    engines << engines[3];
    IbusRig::setEngines(names + "]");
    fake.behave(engines);
    fake.answers["Get"] = replyWith(FakeIbus::variant(hangul));
    owner.appear();
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
        Answer reply;
        SelectResult expected;
    } cases[] = {
        {replyWithError("Cannot find engine hangul."), notFound},
        {replyWithError("Set global engine failed: timed out"), refused},
        {silence, accepted},
    };
    fake.behave({english, hangul});
    owner.appear();
    ASSERT_TRUE(become(true));
    for (const auto& tested : cases) {
        fake.answers["SetGlobalEngine"] = tested.reply;
        const SwitchOutcome outcome = service.switchTo("ibus:hangul");
        EXPECT_EQ(outcome.result, tested.expected);
        EXPECT_FALSE(outcome.verified);
        EXPECT_EQ(outcome.latencyMs < 400, tested.expected != accepted);
    }
    EXPECT_FALSE(service.switchTo("ibus:xkb:us::eng").verified) << "is current, but was asked to leave";

    fake.answers.erase("SetGlobalEngine");
    fake.waiting.clear();
    for (const char* id : {"ibus:hangul", "ibus:xkb:us::eng"}) EXPECT_EQ(sources->select(id), accepted);
    ASSERT_TRUE(runLoopUntil([&] { return fake.waiting.size() == 2; }));
    fake.send(fake.waiting[0].createErrorReply("org.freedesktop.DBus.Error.Failed", "Cannot find engine."));
    EXPECT_TRUE(staysFalse([&] { return sources->refusal().has_value(); }));

    fake.answers["SetGlobalEngine"] = fake.obeying();
    EXPECT_TRUE(service.switchTo("ibus:hangul").verified);
    EXPECT_TRUE(service.switchTo("ibus:xkb:us::eng").verified) << "and its layout is none";
}

TEST_F(HostileIbus, NameHeldByFcitxIsNotIbus) {
    fake.behave({hangul});
    PlayedObject fcitx(session.busAddress(), "org.fcitx.Fcitx5", "/");
    owner.appear();
    EXPECT_TRUE(staysFalse([&] { return sources->retry(), sources->isInCharge(); }));
    fcitx.disappear();
    EXPECT_TRUE(become(true));
    fcitx.appear();
    EXPECT_TRUE(become(false));
}

TEST_F(HostileIbus, SocketThatHangsOrTalksNonsenseHoldsUpNobody) {
    const session::TemporaryFolder folder;
    const QString path = QString::fromStdString(folder.path() / "socket");
    const QString touched = QString::fromStdString(folder.path() / "touched");
    QLocalServer silent, full, talking;
    full.setListenBacklogSize(0);
    full.setMaxPendingConnections(0);
    ASSERT_TRUE(silent.listen(path + '1') && full.listen(path + '2') && talking.listen(path + '3'));
    QLocalSocket queued, another;
    queued.connectToServer(path + '2');
    another.connectToServer(path + '2');
    ASSERT_NE(another.state(), QLocalSocket::ConnectedState) << "for which there is no room";
    int talks = 0;
    QObject::connect(&talking, &QLocalServer::newConnection, &talking, [&] {
        const QByteArray greeting = "OK 0123456789abcdef0123456789abcdef\r\nAGREE_UNIX_FD\r\n";
        talking.nextPendingConnection()->write(greeting + QByteArray(300, '\xFF'));
        ++talks;
    });
    fake.behave({hangul});
    const QByteArray good = qgetenv("IBUS_ADDRESS");
    const double start = uptimeSeconds();
    for (const QString& address :
         {"unix:path=" + path + '1', "unix:path=" + path + '2', "unix:path=" + path + '3',
          "unix:path=" + path + '4', "unixexec:path=/usr/bin/touch,argv1=" + touched, QString("unix:"),
          QString("x"), "unix:path=" + QString(400, 'x')}) {
        qputenv("IBUS_ADDRESS", address.toUtf8());
        restart();
        EXPECT_TRUE(staysFalse([&] { return sources->retry(), sources->isInCharge(); },
                               std::chrono::milliseconds(60)));
    }
    EXPECT_LT(uptimeSeconds() - start, 5);
    EXPECT_GT(talks, 0);
    EXPECT_FALSE(QFile::exists(touched));
    qputenv("IBUS_ADDRESS", good);
    restart();
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
} // namespace hopsel::test
