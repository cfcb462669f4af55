// A launcher and a program that answer anything, late or not at all.
#include "platform/linux/accessibility/atspi_secure_input.h"
#include "session/private_bus.h"
#include "support/bus_links.h"
#include "support/fakes/engine_fakes.h"
#include "support/played_object.h"

#include <QDBusVariant>
#include <QLocalServer>
#include <QLocalSocket>
#include <gtest/gtest.h>

using namespace hopsel;
using namespace hopsel::test;
using session::PrivateBus;

namespace {

class HostileBus : public testing::Test {
  protected:
    HostileBus() { launcher.answers["Get"] = replyWith(QVariant::fromValue(QDBusVariant(true))); }
    void answerAddress(const QVariant& address) { launcher.answers["GetAddress"] = replyWith(address); }
    void watch() { input = std::make_unique<AtspiSecureInput>(linkTo(sessionBus.address()), log); }
    bool reachesWatching() {
        return runLoopUntil([&] {
            if (input->needsRetry()) input->retry();
            return input->state() == SecureInputState::watching;
        });
    }
    void watchRealBus() {
        answerAddress(QString::fromStdString(otherBus.address()));
        watch();
        ASSERT_TRUE(reachesWatching());
    }
    void focus(const QString& path, const QVariantList& arguments = {"focused", 1, 0}) {
        program.signal(path, "org.a11y.atspi.Event.Object", "StateChanged", arguments);
    }
    bool becomes(bool isEnabled) {
        return runLoopUntil([&] { return input->isEnabled() == isEnabled; });
    }

    PrivateBus sessionBus;
    PrivateBus otherBus{PrivateBus::Kind::system};
    PlayedObject launcher{sessionBus.address(), "org.a11y.Bus", "/"};
    PlayedObject program{otherBus.address(), "", "/"};
    fakes::RecordingLog log;
    std::unique_ptr<AtspiSecureInput> input;
};

TEST_F(HostileBus, AddressesThatLeadNowhereFreezeNothingAndAreTriedAgain) {
    session::TemporaryFolder folder;
    const auto marker = folder.path() / "started";
    QLocalServer silent;
    const QString path = QString::fromStdString((folder.path() / "silent").string());
    ASSERT_TRUE(silent.listen(path));
    const double start = session::monotonicSeconds();
    answerAddress(7);
    watch();
    for (const QVariant& wrong :
         {QVariant(QStringList{"unix:path=/x"}), QVariant(""), QVariant(";;unix:path=%"),
          QVariant("unix:path=/nonexistent/socket"), QVariant("tcp:host=localhost,port=1"),
          QVariant(QString::fromStdString("unixexec:path=touch,argv1=" + marker.string())),
          QVariant(QString(200'000, 'x')), QVariant("unix:path=" + path)}) {
        answerAddress(wrong);
        const int before = launcher.calls["GetAddress"];
        input->retry();
        ASSERT_TRUE(launcher.isAsked("GetAddress", before + 1));
    }
    ASSERT_TRUE(runLoopUntil([&] { return silent.hasPendingConnections(); }));
    EXPECT_TRUE(staysFalse([&] { return input->state() != SecureInputState::unavailable; }));
    EXPECT_LT(session::monotonicSeconds() - start, 5);
    EXPECT_FALSE(exists(marker));
    silent.nextPendingConnection()->write("REJECTED\r\n");
    answerAddress("autolaunch:;" + QString::fromStdString(otherBus.address()));
    EXPECT_TRUE(reachesWatching());
}

TEST_F(HostileBus, OnlyAPlainYesCounts) {
    watchRealBus();
    for (const QVariantList& event :
         {QVariantList{"focused"}, {"focused", "1"}, {"focused", 1U}, {"focused", 2}})
        focus("/field", event);
    for (const QVariant& role : {QVariant("40"), QVariant(40), QVariant(QStringList{"40"}), QVariant(61U)}) {
        program.answers["GetRole"] = replyWith(role);
        const int before = program.calls["GetRole"];
        focus("/field");
        ASSERT_TRUE(program.isAsked("GetRole", before + 1));
    }
    EXPECT_EQ(program.calls["GetRole"], 4);
    program.answers["GetRole"] = replyWith();
    focus("/field");
    EXPECT_TRUE(staysFalse([&] { return input->isEnabled(); }));

    const QVariant focused = QVariant::fromValue(QList<uint>{1U << 12U, 0});
    for (const QVariant& state :
         {QVariant(1U << 12U), QVariant::fromValue(QList<int>{1 << 12}), QVariant::fromValue(QList<uint>()),
          QVariant::fromValue(QList<uint>{0, 4096})}) {
        program.answers["GetRole"] = replyWith(40U);
        program.answers["GetState"] = replyWith(focused);
        focus("/field");
        ASSERT_TRUE(becomes(true));
        const int before = program.calls["GetState"];
        input->retry();
        ASSERT_TRUE(program.isAsked("GetState", before + 1));
        EXPECT_TRUE(staysFalse([&] { return !input->isEnabled(); }, std::chrono::milliseconds(30)));
        program.answers["GetState"] = replyWith(state);
        input->retry();
        EXPECT_TRUE(becomes(false));
    }
}

TEST_F(HostileBus, LateAnswersAreOfNoAccount) {
    watchRealBus();
    focus("/password");
    ASSERT_TRUE(program.isAsked("GetRole"));
    program.answers["GetRole"] = replyWith(61U);
    focus("/plain");
    ASSERT_TRUE(program.isAsked("GetRole", 2));
    program.answerWaiting(0, 40U);
    EXPECT_TRUE(staysFalse([&] { return input->isEnabled(); }));

    program.answers["GetRole"] = replyWith(40U);
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

} // namespace
