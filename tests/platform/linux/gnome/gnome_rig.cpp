#include "platform/linux/gnome/gnome_rig.h"

#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <cstdio>
#include <vector>

namespace hopsel::test {

namespace {

const QString remoteDesktop = QStringLiteral("org.gnome.Mutter.RemoteDesktop");
int made = 0;
const int leftShift = 42;
constexpr auto patience = std::chrono::seconds(60);

} // namespace

Caller::Caller(const std::string& busAddress)
    : name_(QStringLiteral("caller %1").arg(++made)),
      bus_(QDBusConnection::connectToBus(QString::fromStdString(busAddress), name_)) {}

void Caller::leave() {
    bus_ = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(name_);
}

QDBusPendingCall Caller::begin(const QString& service, const QString& path, const QString& interface,
                               const QString& method, const QVariantList& arguments) {
    auto message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    return bus_.asyncCall(message);
}

QDBusMessage Caller::call(const QString& service, const QString& path, const QString& interface,
                          const QString& method, const QVariantList& arguments) {
    return wait(begin(service, path, interface, method, arguments));
}

QDBusMessage Caller::wait(const QDBusPendingCall& sent) {
    QDBusPendingCallWatcher watcher(sent);
    EXPECT_TRUE(runLoopUntil([&] { return watcher.isFinished(); }, patience));
    return watcher.reply();
}

std::string Caller::error(const QString& method, const QVariantList& arguments) {
    return call("app.hopsel.Shell", "/app/hopsel/Shell", "app.hopsel.Shell1", method, arguments)
        .errorName()
        .section(u'.', -1)
        .toStdString();
}

bool Caller::isFloodRefused(const QString& method, const QVariantList& arguments) {
    for (int round = 0; round < 20; ++round) {
        // Sent in one go, so that they arrive in one second on whatever machine.
        std::vector<QDBusPendingCall> calls;
        calls.reserve(2000);
        for (int i = 0; i < 2000; ++i)
            calls.push_back(
                begin("app.hopsel.Shell", "/app/hopsel/Shell", "app.hopsel.Shell1", method, arguments));
        EXPECT_TRUE(runLoopUntil([&] { return calls.back().isFinished(); }, std::chrono::seconds(60)));
        for (const QDBusPendingCall& sent : calls) {
            if (sent.error().name().endsWith(".TooMany")) return true;
        }
    }
    return false;
}

GnomeRig::GnomeRig(Kind kind) : session(HOPSEL_SHARE, "[('xkb','us'),('xkb','ru'),('ibus','hangul')]", kind) {
    const auto isThere = [&](const QString& name) {
        return caller
            .call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "NameHasOwner",
                  {name})
            .arguments()
            .value(0)
            .toBool();
    };
    EXPECT_TRUE(runLoopUntil([&] { return isThere("app.hopsel.Shell") && isThere(remoteDesktop); }, patience))
        << "no shell, or no extension; HOPSEL_SHOW_SHELL_LOG=1 shows what it says";
    EXPECT_TRUE(
        runLoopUntil([&] { return evaluate("Main.layoutManager._startingUp") == "false"; }, patience));
    evaluate("Main.overview.hide()");
    if (kind == Kind::x11) return;
    keyboard_ = caller.call(remoteDesktop, "/org/gnome/Mutter/RemoteDesktop", remoteDesktop, "CreateSession")
                    .arguments()
                    .value(0)
                    .value<QDBusObjectPath>()
                    .path();
    caller.call(remoteDesktop, keyboard_, remoteDesktop + ".Session", "Start");
    notify({{"NotifyPointerMotionRelative", {640.0, 360.0}}}); // away from the shell's own buttons
    type({leftShift}); // without a keyboard, which the first key makes, no window gets the focus
}

std::string GnomeRig::evaluate(const QString& script) {
    return caller.call("org.gnome.Shell", "/org/gnome/Shell", "org.gnome.Shell", "Eval", {script})
        .arguments()
        .value(1)
        .toString()
        .toStdString();
}

void GnomeRig::enableExtension(bool isEnabled) {
    caller.call("org.gnome.Shell", "/org/gnome/Shell", "org.gnome.Shell.Extensions",
                isEnabled ? "EnableExtension" : "DisableExtension", {"hopsel-43@app.hopsel.Hopsel"});
}

void GnomeRig::type(const std::vector<int>& evdevCodes) {
    std::vector<std::pair<QString, QVariantList>> events;
    for (const int code : evdevCodes)
        for (const bool isDown : {true, false})
            events.emplace_back("NotifyKeyboardKeycode", QVariantList{static_cast<uint>(code), isDown});
    notify(events);
}

void GnomeRig::key(int evdevCode, bool isDown) {
    notify({{"NotifyKeyboardKeycode", {static_cast<uint>(evdevCode), isDown}}});
}

void GnomeRig::click() {
    const int leftButton = 0x110;
    notify({{"NotifyPointerButton", {leftButton, true}}, {"NotifyPointerButton", {leftButton, false}}});
}

void GnomeRig::clickOn(const QString& actor, int button) {
    const QString way =
        "(() => { const actor = " + actor +
        "; const [x, y] = actor.get_transformed_position();"
        "const [width, height] = actor.get_transformed_size();"
        "const [px, py] = global.get_pointer(); const hit = global.stage.get_actor_at_pos("
        "imports.gi.Clutter.PickMode.REACTIVE, x + width / 2, y + height / 2);"
        "return hit === actor ? [x + width / 2 - px, y + height / 2 - py].join(' ') : ''; })()";
    double x = 0, y = 0;
    const auto isFound = [&] { return std::sscanf(evaluate(way).c_str(), "\"%lf %lf", &x, &y) == 2; };
    ASSERT_TRUE(runLoopUntil(isFound, patience)) << qPrintable(actor) << " is not to be clicked";
    notify({{"NotifyPointerMotionRelative", {x, y}}});
    const auto isUnder = [&] { return evaluate("(" + actor + ").hover") == "true"; };
    ASSERT_TRUE(runLoopUntil(isUnder, patience)) << "the shell looks what is there once a frame";
    notify({{"NotifyPointerButton", {button, true}}, {"NotifyPointerButton", {button, false}}});
}

void GnomeRig::openMenu(const QString& button) {
    clickOn(button);
    const auto isOpen = [&] {
        return evaluate("(menu => menu.isOpen && !menu._boxPointer._muteInput)(" + button + ".menu)") ==
               "true";
    };
    ASSERT_TRUE(runLoopUntil(isOpen, patience)) << "while it opens the shell lets nothing through to it";
}

void GnomeRig::chooseInMenu(const QString& button, const QString& text) {
    openMenu(button);
    clickOn(button + ".menu._getMenuItems().find(item => item.label?.text === '" + text + "')");
}

void GnomeRig::keepPicture(const QString& name) {
    const QString folder = qEnvironmentVariable("HOPSEL_PICTURES");
    if (folder.isEmpty()) return;
    caller.call("org.gnome.Shell.Screenshot", "/org/gnome/Shell/Screenshot", "org.gnome.Shell.Screenshot",
                "Screenshot", {false, false, folder + "/" + name + ".png"});
}

void GnomeRig::scroll() { notify({{"NotifyPointerAxisDiscrete", {0U, 1}}}); }

void GnomeRig::notify(const std::vector<std::pair<QString, QVariantList>>& events) {
    std::vector<QDBusPendingCall> sent;
    sent.reserve(events.size());
    for (const auto& [method, arguments] : events)
        sent.push_back(caller.begin(remoteDesktop, keyboard_, remoteDesktop + ".Session", method, arguments));
    for (const QDBusPendingCall& call : sent) {
        const QDBusMessage reply = caller.wait(call);
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << qPrintable(reply.errorMessage());
    }
}

void GnomeRig::setLocked(bool isLocked) {
    evaluate(isLocked ? "Main.sessionMode.pushMode('unlock-dialog')"
                      : "Main.sessionMode.popMode('unlock-dialog')");
}

} // namespace hopsel::test
