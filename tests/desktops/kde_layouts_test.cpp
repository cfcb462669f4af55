// KDE's keyboard daemon is played here, on a bus of the test's own, so that it can answer late, wrongly or
// never.
#include "core/platform/linux/desktops/kde_layouts.h"

#include "desktops/framework_watch.h"
#include "session/private_bus.h"

#include <QDBusConnectionInterface>
#include <QDBusMetaType>
#include <QDBusVirtualObject>

namespace hopsel::test {

struct Told {
    QString layout, label, name;
};
QDBusArgument& operator<<(QDBusArgument& out, const Told& told) {
    out.beginStructure();
    out << told.layout << told.label << told.name;
    out.endStructure();
    return out;
}
const QDBusArgument& operator>>(const QDBusArgument& in, Told& told) {
    return in >> told.layout >> told.label >> told.name; // for the registration, which asks for it
}

} // namespace hopsel::test
Q_DECLARE_METATYPE(hopsel::test::Told)

namespace hopsel::test {
namespace {

class KdeDaemon final : public QDBusVirtualObject {
  public:
    KdeDaemon(const session::PrivateBus& bus, QString connectionName) : name(std::move(connectionName)) {
        qDBusRegisterMetaType<Told>();
        qDBusRegisterMetaType<QList<Told>>();
        own = QDBusConnection::connectToBus(QString::fromStdString(bus.address()), name);
        own.registerVirtualObject("/Layouts", this);
        own.interface()->registerService("org.kde.keyboard", QDBusConnectionInterface::QueueService);
    }
    ~KdeDaemon() override { die(); }
    void die() {
        own = QDBusConnection(QString());
        QDBusConnection::disconnectFromBus(name);
    }

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& call, const QDBusConnection&) override {
        calls << call.member();
        if (call.member() == isSilentAbout) {
            call.setDelayedReply(true);
            unanswered << call;
            return true;
        }
        QVariant answer;
        if (call.member() == u"getLayoutsList") answer = list.isValid() ? list : QVariant::fromValue(layouts);
        if (call.member() == u"getLayout") answer = current;
        if (call.member() == u"setLayout") answer = set(call.arguments().constFirst().toUInt());
        own.send(answer.isValid() ? call.createReply(answer)
                                  : call.createErrorReply("org.example.No", "it would not"));
        return true;
    }
    QVariant set(uint index) {
        if (setAnswer != QVariant(true)) return setAnswer;
        if (isObedient) change(index);
        return true;
    }
    void change(uint index) {
        current = index;
        if (isTelling) signal("layoutChanged", {index});
    }
    void signal(const QString& member, const QVariantList& arguments = {}) {
        auto message = QDBusMessage::createSignal("/Layouts", "org.kde.KeyboardLayouts", member);
        message.setArguments(arguments);
        own.send(message);
    }

    QString name;
    QDBusConnection own{QString()};
    QList<Told> layouts{
        {"us", "", "English (US)"}, {"us", "dvo", "English (Dvorak)"}, {"ru", "ru", "Russian"}};
    QVariant list; ///< instead of the layouts
    uint current = 0;
    QVariant setAnswer = true;
    bool isObedient = true;
    bool isTelling = true;
    QString isSilentAbout;
    QList<QDBusMessage> unanswered;
    QStringList calls;
};

class KdeLayoutsTest : public testing::Test {
  protected:
    session::PrivateBus bus;
    KdeDaemon daemon{bus, "kde"};
    KdeLayouts layouts;
    FrameworkWatch watch{layouts};
};

TEST_F(KdeLayoutsTest, ListAndSwitchAndFollowTheDaemon) {
    EXPECT_FALSE(layouts.isInCharge());
    ASSERT_TRUE(watch.comesInCharge());
    const std::vector<InputSourceInfo> expected{{"kde:us", "English (US)", "KDELayout", {"en"}, true},
                                                {"kde:us:dvo", "English (Dvorak)", "KDELayout", {"en"}, true},
                                                {"kde:ru", "Russian", "KDELayout", {"ru"}, true}};
    EXPECT_EQ(layouts.enabledKeyboardSources(), expected);
    EXPECT_EQ(layouts.currentID(), "kde:us");
    EXPECT_EQ(layouts.select("kde:us:dvo"), accepted);
    EXPECT_TRUE(watch.becomesCurrent("kde:us:dvo"));
    EXPECT_EQ(layouts.select("kde:us#2"), SelectResult(select_result::NotFound{}));
    daemon.change(2);
    EXPECT_TRUE(watch.becomesCurrent("kde:ru"));
    daemon.change(2);
    daemon.signal("layoutChanged", {"2"});
    daemon.signal("layoutListChanged");
    daemon.isTelling = false; // what it does not tell is read back
    EXPECT_EQ(layouts.select("kde:us"), accepted);
    EXPECT_TRUE(watch.becomesCurrent("kde:us"));
    EXPECT_EQ(watch.inCharge, 1);
    EXPECT_EQ(watch.sources, 0);
    EXPECT_EQ(watch.selected, 3);
    EXPECT_EQ(layouts.refusal(), std::nullopt);
}

TEST_F(KdeLayoutsTest, IdentifiersSurviveAnotherOrderAlsoInTheMiddleOfASwitch) {
    ASSERT_TRUE(watch.comesInCharge());
    std::rotate(daemon.layouts.begin(), daemon.layouts.begin() + 2, daemon.layouts.end());
    daemon.layouts.append({"us", "dvo", "English (Dvorak)"});
    daemon.calls.clear();
    daemon.signal("layoutListChanged");
    ASSERT_TRUE(runLoopUntil([&] { return !daemon.calls.isEmpty(); }));
    EXPECT_EQ(layouts.select("kde:us:dvo"), accepted);
    EXPECT_TRUE(watch.becomesCurrent("kde:us:dvo"));
    EXPECT_EQ(daemon.current, 2U) << "its position in the new list";
    EXPECT_EQ(watch.ids(), (Strings{"kde:ru", "kde:us", "kde:us:dvo", "kde:us:dvo#2"}));
    EXPECT_EQ(watch.sources, 1);
}

TEST_F(KdeLayoutsTest, WhateverIsNoYesIsARefusal) {
    ASSERT_TRUE(watch.comesInCharge());
    for (const QVariant& answer : {QVariant(false), QVariant("yes"), QVariant()}) {
        daemon.setAnswer = answer;
        EXPECT_EQ(layouts.select("kde:ru"), accepted);
        EXPECT_TRUE(watch.isRefused(refused)) << answer.toString().toStdString();
    }
    daemon.setAnswer = true;
    daemon.isObedient = false;
    EXPECT_EQ(layouts.select("kde:ru"), accepted);
    EXPECT_TRUE(staysFalse([&] { return layouts.refusal() || layouts.currentID() != "kde:us"; }));
    EXPECT_EQ(watch.selected, 0);
}

TEST_F(KdeLayoutsTest, DeathInTheMiddleOfASwitchEndsItAndLateAnswersDoNotCount) {
    ASSERT_TRUE(watch.comesInCharge());
    KdeDaemon next(bus, "next kde");
    next.layouts = {{"kr", "", "Korean"}};
    daemon.isSilentAbout = "setLayout";
    EXPECT_EQ(layouts.select("kde:ru"), accepted);
    ASSERT_TRUE(runLoopUntil([&] { return !daemon.unanswered.isEmpty(); }));
    daemon.own.unregisterService("org.kde.keyboard");
    EXPECT_TRUE(watch.isRefused(gone));
    ASSERT_TRUE(watch.comesInCharge());
    EXPECT_EQ(watch.inCharge, 3) << "there, gone and there again";
    EXPECT_EQ(watch.ids(), Strings{"kde:kr"});
    EXPECT_EQ(layouts.select("kde:kr"), accepted);
    daemon.own.send(daemon.unanswered.first().createReply(false));
    daemon.signal("layoutChanged", {7U});
    EXPECT_TRUE(staysFalse([&] { return layouts.refusal() || layouts.currentID() != "kde:kr"; }));

    next.isSilentAbout = "setLayout";
    EXPECT_EQ(layouts.select("kde:kr"), accepted);
    next.die();
    EXPECT_TRUE(watch.isRefused(gone));
    EXPECT_TRUE(watch.comesInCharge(false));
    EXPECT_EQ(layouts.select("kde:kr"), gone);
}

TEST_F(KdeLayoutsTest, AnythingForAListGivesOneThatIsSafeToShow) {
    ASSERT_TRUE(watch.comesInCharge());
    const auto tell = [&](const QList<Told>& told, std::size_t count) {
        daemon.layouts = told;
        daemon.signal("layoutListChanged");
        return runLoopUntil([&] { return watch.ids().size() == count; });
    };
    daemon.current = 4'000'000'000U;
    EXPECT_TRUE(tell({{"a\nb\u200b", QString(QChar(0xd800)), QString(100'000, u'x')}, {"", "", "y"}}, 2));
    EXPECT_EQ(watch.ids(), (Strings{"kde:a b:?", "kde:y"}));
    EXPECT_EQ(layouts.enabledKeyboardSources()[0].name, std::string(64, 'x'));
    EXPECT_EQ(layouts.currentID(), std::nullopt);
    EXPECT_TRUE(tell(QList<Told>(50'000, Told{"us", "", ""}), 64));
    daemon.layouts = {{"", "", ""}};
    daemon.signal("layoutListChanged");
    EXPECT_TRUE(watch.comesInCharge(false)) << "nothing that could be named";

    for (const QVariant& wrong : {QVariant("us"), QVariant(QStringList{"us", "ru"}), QVariant(7)}) {
        daemon.list = QVariant();
        daemon.layouts = {{"us", "", ""}};
        layouts.retry();
        ASSERT_TRUE(watch.comesInCharge());
        daemon.list = wrong;
        daemon.signal("layoutListChanged");
        EXPECT_TRUE(watch.comesInCharge(false));
    }
}

TEST_F(KdeLayoutsTest, LostBusIsReplacedByTheNext) {
    ASSERT_TRUE(watch.comesInCharge());
    bus.kill();
    EXPECT_TRUE(watch.comesInCharge(false));
    const session::PrivateBus nextBus;
    layouts.retry();
    KdeDaemon next(nextBus, "next kde");
    EXPECT_TRUE(watch.comesInCharge());
    next.change(2);
    EXPECT_TRUE(watch.becomesCurrent("kde:ru"));
}

} // namespace
} // namespace hopsel::test
