// Combinations through KDE's global shortcuts, which are played, and what becomes of them when the key helper
// comes.
#include "platform/linux/kde_keys/kde_key_session.h"

#include "core/platform/tap_failure.h"
#include "platform/linux/bus/bus_address.h"
#include "platform/linux/keys_session/played_helper.h"
#include "session/private_bus.h"
#include "support/fakes/engine_fakes.h"
#include "support/played_object.h"

#include <QTemporaryDir>
#include <filesystem>
#include <gmock/gmock.h>
#include <map>
#include <set>

namespace hopsel::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int space = 0x20;
constexpr int shift = 0x02000000;
constexpr int control = 0x04000000;

ShortcutKey key(const char* text) { return ShortcutKey::fromStorageString(text).value(); }

/// KDE's service: has the combinations of ours that nobody else has.
class KdeService final : public PlayedObject {
  public:
    explicit KdeService(const session::PrivateBus& bus)
        : PlayedObject(bus.address(), "org.kde.kglobalaccel", "/") {
        answers["doRegister"] = replyWith();
        answers["shortcutNames"] = [this](const auto& call) {
            QStringList names = leftOver;
            for (const auto& [name, key] : given) names << name;
            return call.createReply(QVariant(names));
        };
        answers["setShortcut"] = [this](const QDBusMessage& call) {
            const QString name = call.arguments().at(0).toStringList().at(1);
            const int wanted = qdbus_cast<QList<int>>(call.arguments().at(1)).constFirst();
            flags = call.arguments().at(2).toUInt();
            given[name] = others.count(wanted) == 0 ? wanted : 0;
            return call.createReply(QVariant::fromValue(QList<int>{given[name]}));
        };
        answers["unregister"] = [this](const QDBusMessage& call) {
            given.erase(call.arguments().at(1).toString());
            leftOver.removeAll(call.arguments().at(1).toString());
            return call.createReply(true);
        };
    }
    void tell(const char* what, const QString& action) const {
        signal("/component/hopsel", "org.kde.kglobalaccel.Component", what,
               {"hopsel", action, QVariant::fromValue(qlonglong{0})});
    }
    bool gives(const std::map<QString, int>& expected) const {
        return runLoopUntil([&] { return given == expected; });
    }

    QStringList leftOver;
    std::map<QString, int> given;
    std::set<int> others;
    uint flags = 0;
};

class KdeKeys : public testing::Test {
  protected:
    KdeKeys() {
        source.onInput = [this](const ShortcutInput& input) {
            inputs.push_back(input);
            return true;
        };
        source.onDisabled = [this](bool /*reenabled*/) { ++lost; };
        source.onUnavailableChanged = [this] { ++told; };
    }
    void start(const ShortcutSet& combinations) {
        source.setShortcuts(combinations);
        ASSERT_TRUE(runLoopUntil([this] { return source.isOffered(); }));
        source.start();
    }

    session::PrivateBus bus;
    KdeService service{bus};
    std::shared_ptr<BusLink> link = std::make_shared<BusLink>(bus_address::session);
    fakes::RecordingLog log;
    KdeShortcutSource source{link, log};
    std::vector<ShortcutInput> inputs;
    int lost = 0;
    int told = 0;
};

TEST_F(KdeKeys, AreTakenToldAndGivenBack) {
    service.leftOver = {"36|leftControl"}; // of a program that has crashed
    EXPECT_THROW(source.start(), TapFailure) << "nobody has answered yet";
    start({key("49|leftShift"), key("122|leftShift,rightControl")});
    EXPECT_TRUE(service.gives(
        {{"49|leftShift", shift | space}, {"122|leftShift,rightControl", shift | control | 0x01000030}}));
    EXPECT_EQ(service.flags, 6U) << "there, and as we say";
    EXPECT_TRUE(runLoopUntil([&] { return service.leftOver.isEmpty(); }));
    for (const char* what : {"Released", "Pressed", "Pressed", "Released", "Released"})
        service.tell((std::string("globalShortcut") + what).c_str(), "49|leftShift");
    service.tell("globalShortcutPressed", "50|leftShift");
    service.tell("globalShortcutPressed", "122|leftShift,rightControl");
    ASSERT_TRUE(runLoopUntil([&] { return inputs.size() == 4; }));
    using Kind = ShortcutInput::Kind;
    const std::uint64_t held = flagsOf(ModifierSet{ModifierKey::leftShift});
    const ModifierSet both{ModifierKey::leftShift, ModifierKey::rightControl};
    EXPECT_THAT(inputs, ElementsAre(ShortcutInput{Kind::keyDown, 49, held, false, false},
                                    ShortcutInput{Kind::keyDown, 49, held, true, false},
                                    ShortcutInput{Kind::keyUp, 49, 0, false, false},
                                    ShortcutInput{Kind::keyDown, 122, flagsOf(both), false, false}));
    source.setShortcuts({key("49|leftShift")});
    EXPECT_TRUE(service.gives({{"49|leftShift", shift | space}}));
    EXPECT_THAT(source.unavailableShortcuts(), IsEmpty());
    source.setStandsAside(true);
    EXPECT_TRUE(service.gives({}));
    source.setStandsAside(false);
    EXPECT_TRUE(service.gives({{"49|leftShift", shift | space}}));
    source.stop();
    EXPECT_TRUE(service.gives({}));
}

TEST_F(KdeKeys, WhatKdeCannotGiveIsNamedAndTriedAgain) {
    service.others = {control | space};
    const ShortcutKey left = key("49|leftShift");
    const ShortcutKey right = key("49|rightShift");
    start({key("49|leftControl"), left, right, key("40|leftControl"), key("49|rightOption"),
           key("49|leftShift,rightShift")});
    EXPECT_TRUE(runLoopUntil([&] { return told == 1; }));
    EXPECT_EQ(source.unavailableShortcuts(),
              (ShortcutSet{key("49|leftControl"), right, key("40|leftControl"), key("49|rightOption"),
                           key("49|leftShift,rightShift")}));
    service.others.clear();
    EXPECT_TRUE(runLoopUntil([&] { return told == 2; }));
    EXPECT_EQ(source.unavailableShortcuts().count(key("49|leftControl")), 0U);
    source.setShortcuts({right});
    EXPECT_TRUE(service.gives({{"49|rightShift", shift | space}}));
}

TEST_F(KdeKeys, EndWithKdeAndBeginWithIt) {
    start({key("49|leftShift")});
    EXPECT_TRUE(service.gives({{"49|leftShift", shift | space}}));
    service.disappear();
    EXPECT_TRUE(runLoopUntil([&] { return lost == 1; }));
    service.tell("globalShortcutPressed", "49|leftShift");
    EXPECT_THROW(source.start(), TapFailure);
    service.given.clear();
    service.appear();
    start({key("49|leftShift")});
    EXPECT_TRUE(service.gives({{"49|leftShift", shift | space}}));
    EXPECT_THAT(inputs, IsEmpty());
}

TEST_F(KdeKeys, AreTheHelpersOnceThereIsOne) {
    const QTemporaryDir folder;
    const std::string socket = folder.filePath("keys.sock").toStdString();
    KdeKeySession keys(link, {socket, {}, "/nowhere"}, [] { return 100.0; }, log);
    const auto listening = keys.listenSource();
    std::vector<bool> disabled;
    listening->onDisabled = [&](bool again) { disabled.push_back(again); };
    int handled = 0;
    keys.onHandled = [&] { ++handled; };
    keys.shortcutSource()->onInput = source.onInput;
    keys.shortcutSource()->setShortcuts({key("49|leftShift")});
    const auto starts = [&] {
        try {
            listening->start();
            return true;
        } catch (const TapFailure&) {
            return false;
        }
    };
    ASSERT_TRUE(runLoopUntil(starts));
    EXPECT_FALSE(listening->hearsTaps());
    EXPECT_FALSE(keys.permissions()->inputMonitoringGranted()) << "something is missing";
    EXPECT_NE(keys.listeningFailure().find("until then KDE tells"), std::string::npos);
    keys.shortcutSource()->start();
    EXPECT_TRUE(service.gives({{"49|leftShift", shift | space}}));
    service.tell("globalShortcutPressed", "49|leftShift");
    EXPECT_TRUE(runLoopUntil([&] { return handled == 1; }));
    EXPECT_EQ(inputs.size(), 1U);

    PlayedHelper helper;
    std::filesystem::create_symlink(helper.path(), socket);
    ASSERT_TRUE(helper.greet());
    ASSERT_TRUE(runLoopUntil([&] { return disabled == std::vector<bool>{false}; }));
    keys.shortcutSource()->stop();
    EXPECT_TRUE(service.gives({}));
    EXPECT_TRUE(starts());
    EXPECT_TRUE(listening->hearsTaps());
    EXPECT_EQ(keys.listeningFailure(), "");
    keys.shortcutSource()->start();
    ASSERT_TRUE(helper.greet());
    EXPECT_EQ(helper.declared(), std::vector<std::string>{"49|leftShift"});
    EXPECT_THAT(service.given, IsEmpty());
    helper.hangUp();
    EXPECT_TRUE(runLoopUntil([&] { return disabled.size() == 2; }));
}

} // namespace
} // namespace hopsel::test
