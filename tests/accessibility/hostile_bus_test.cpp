// A launcher and a program that answer anything, late or not at all.
#include "core/platform/linux/accessibility/atspi_secure_input.h"
#include "session/private_bus.h"
#include "support/fakes/engine_fakes.h"
#include "support/qt_waiting.h"

#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QLocalServer>
#include <QLocalSocket>
#include <gmock/gmock.h>
#include <map>

using namespace hopsel;
using namespace hopsel::test;
using session::PrivateBus;

namespace {

/// On every path: gives each method the answer that the test has set for it, and keeps the others waiting.
class Answering : public QDBusVirtualObject {
  public:
    Answering(const PrivateBus& bus, const QString& name)
        : connection(QDBusConnection::connectToBus(QString::fromStdString(bus.address()), name)) {
        connection.registerVirtualObject("/", this, QDBusConnection::SubPath);
    }
    ~Answering() override { QDBusConnection::disconnectFromBus(connection.name()); }

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override {
        ++asked[message.member()];
        if (answers.contains(message.member()))
            connection.send(message.createReply(answers[message.member()]));
        else
            waiting.push_back(message);
        return true;
    }
    bool isAsked(const QString& method, int count = 1) {
        return runLoopUntil([&] { return asked[method] >= count; });
    }

    QDBusConnection connection;
    std::map<QString, QVariantList> answers;
    std::map<QString, int> asked;
    QList<QDBusMessage> waiting;
};

class HostileBus : public testing::Test {
  protected:
    HostileBus() {
        launcher.answers["Get"] = {QVariant::fromValue(QDBusVariant(true))};
        launcher.connection.registerService("org.a11y.Bus");
    }
    ~HostileBus() override {
        input.reset();
        QDBusConnection::disconnectFromBus("product");
    }
    void answerAddress(const QVariant& address) { launcher.answers["GetAddress"] = {address}; }
    void watch() {
        input = std::make_unique<AtspiSecureInput>(
            QDBusConnection::connectToBus(QString::fromStdString(sessionBus.address()), "product"), log);
    }
    bool reachesWatching() {
        return runLoopUntil([&] {
            input->retry();
            return input->state() == SecureInputState::watching;
        });
    }
    void watchRealBus() {
        answerAddress(QString::fromStdString(otherBus.address()));
        watch();
        ASSERT_TRUE(reachesWatching());
    }
    void focus(const QString& path, const QVariantList& arguments = {"focused", 1, 0}) {
        auto event = QDBusMessage::createSignal(path, "org.a11y.atspi.Event.Object", "StateChanged");
        event.setArguments(arguments);
        program.connection.send(event);
    }
    bool becomes(bool isEnabled) {
        return runLoopUntil([&] { return input->isEnabled() == isEnabled; });
    }

    PrivateBus sessionBus;
    PrivateBus otherBus{PrivateBus::Kind::system};
    Answering launcher{sessionBus, "launcher"};
    Answering program{otherBus, "program"};
    fakes::RecordingLog log;
    std::unique_ptr<AtspiSecureInput> input;
};

TEST_F(HostileBus, AddressesThatLeadNowhereAreTriedAgain) {
    session::TemporaryFolder folder;
    const auto marker = folder.path() / "started";
    answerAddress(7);
    watch();
    for (const QVariant& wrong :
         {QVariant(QStringList{"unix:path=/x"}), QVariant(""), QVariant(";;unix:path=%"),
          QVariant("unix:path=/nonexistent/socket"), QVariant("tcp:host=localhost,port=1"),
          QVariant(QString::fromStdString("unixexec:path=touch,argv1=" + marker.string())),
          QVariant(QString(200'000, 'x'))}) {
        answerAddress(wrong);
        const int before = launcher.asked["GetAddress"];
        input->retry();
        ASSERT_TRUE(launcher.isAsked("GetAddress", before + 1));
    }
    EXPECT_TRUE(staysFalse([&] { return input->state() != SecureInputState::unavailable; }));
    EXPECT_FALSE(exists(marker));
    answerAddress("autolaunch:;" + QString::fromStdString(otherBus.address()));
    EXPECT_TRUE(reachesWatching());
}

TEST_F(HostileBus, SocketThatNeverGreetsFreezesNothing) {
    session::TemporaryFolder folder;
    QLocalServer silent;
    const QString path = QString::fromStdString((folder.path() / "silent").string());
    ASSERT_TRUE(silent.listen(path));
    answerAddress("unix:path=" + path);
    const double start = session::monotonicSeconds();
    watch();
    ASSERT_TRUE(runLoopUntil([&] { return silent.hasPendingConnections(); }));
    input->retry();
    ASSERT_TRUE(launcher.isAsked("GetAddress", 2));
    EXPECT_TRUE(staysFalse([&] { return input->state() != SecureInputState::unavailable; }));
    EXPECT_LT(session::monotonicSeconds() - start, 5);
    silent.nextPendingConnection()->write("REJECTED\r\n");
    answerAddress(QString::fromStdString(otherBus.address()));
    EXPECT_TRUE(reachesWatching());
}

TEST_F(HostileBus, OnlyAPlainYesCounts) {
    watchRealBus();
    for (const QVariantList& event :
         {QVariantList{"focused"}, {"focused", "1"}, {"focused", 1U}, {"focused", 2}})
        focus("/field", event);
    for (const QVariant& role : {QVariant("40"), QVariant(40), QVariant(QStringList{"40"}), QVariant(61U)}) {
        program.answers["GetRole"] = {role};
        const int before = program.asked["GetRole"];
        focus("/field");
        ASSERT_TRUE(program.isAsked("GetRole", before + 1));
    }
    EXPECT_EQ(program.asked["GetRole"], 4);
    program.answers["GetRole"] = {};
    focus("/field");
    EXPECT_TRUE(staysFalse([&] { return input->isEnabled(); }));

    const QVariant focused = QVariant::fromValue(QList<uint>{1U << 12U, 0});
    for (const QVariant& state :
         {QVariant(1U << 12U), QVariant::fromValue(QList<int>{1 << 12}), QVariant::fromValue(QList<uint>()),
          QVariant::fromValue(QList<uint>{0, 4096})}) {
        program.answers["GetRole"] = {40U};
        program.answers["GetState"] = {focused};
        focus("/field");
        ASSERT_TRUE(becomes(true));
        const int before = program.asked["GetState"];
        input->retry();
        ASSERT_TRUE(program.isAsked("GetState", before + 1));
        EXPECT_TRUE(staysFalse([&] { return !input->isEnabled(); }, std::chrono::milliseconds(30)));
        program.answers["GetState"] = {state};
        input->retry();
        EXPECT_TRUE(becomes(false));
    }
}

TEST_F(HostileBus, LateAnswersAreOfNoAccount) {
    watchRealBus();
    focus("/password");
    ASSERT_TRUE(program.isAsked("GetRole"));
    program.answers["GetRole"] = {61U};
    focus("/plain");
    ASSERT_TRUE(program.isAsked("GetRole", 2));
    program.connection.send(program.waiting.first().createReply(QVariant(40U)));
    EXPECT_TRUE(staysFalse([&] { return input->isEnabled(); }));

    program.answers["GetRole"] = {40U};
    focus("/password");
    ASSERT_TRUE(becomes(true));
    input->retry(); // asks after its state, and gets no answer
    EXPECT_TRUE(becomes(false));
    focus("/password");
    ASSERT_TRUE(becomes(true));
    otherBus.kill();
    EXPECT_TRUE(becomes(false));
    EXPECT_EQ(input->state(), SecureInputState::unavailable);
}

// Another form of address, as older launchers have it.
TEST(BusGreeting, ComesFromABusWithoutAFile) {
    session::ChildProcess::Options options;
    options.program = "dbus-daemon";
    options.package = "dbus-daemon";
    options.arguments = {"--session", "--nofork", "--print-address=1",
                         "--address=unix:abstract=hopsel%2dtest-" + std::to_string(getpid())};
    options.output = session::ChildProcess::Output::capture;
    options.errors = session::ChildProcess::Output::discard;
    session::ChildProcess bus(options);
    const auto address = bus.waitForLine("unix:", std::chrono::seconds(10));
    ASSERT_TRUE(address);
    std::optional<bool> answer;
    const hopsel::BusGreeting greeting(hopsel::BusGreeting::localAddress(QString::fromStdString(*address)),
                                       [&](bool isGreeted) { answer = isGreeted; });
    EXPECT_TRUE(runLoopUntil([&] { return answer.has_value(); }));
    EXPECT_EQ(answer, true) << *address;
}

} // namespace
