#include "fcitx/played_fcitx.h"

#include <QDBusMetaType>

namespace hopsel::test {

// Not in an unnamed namespace, where argument-dependent lookup would not find them.
static QDBusArgument& operator<<(QDBusArgument& out, const GroupMember& member) {
    out.beginStructure();
    out << member.method << member.layout;
    out.endStructure();
    return out;
}
static QDBusArgument& operator<<(QDBusArgument& out, const AvailableMethod& method) {
    out.beginStructure();
    out << method.method << method.name << method.nativeName << method.icon << method.label << method.language
        << method.isConfigurable;
    out.endStructure();
    return out;
}
// Never called, but Qt wants them, of this shape.
// NOLINTBEGIN(bugprone-return-const-ref-from-parameter)
static const QDBusArgument& operator>>(const QDBusArgument& in, GroupMember&) { return in; }
static const QDBusArgument& operator>>(const QDBusArgument& in, AvailableMethod&) { return in; }
// NOLINTEND(bugprone-return-const-ref-from-parameter)

[[maybe_unused]] static const bool areRegistered =
    qDBusRegisterMetaType<GroupMember>().isValid() && qDBusRegisterMetaType<GroupMembers>().isValid() &&
    qDBusRegisterMetaType<AvailableMethod>().isValid() && qDBusRegisterMetaType<AvailableMethods>().isValid();

Answer replyWith(const QVariantList& arguments) {
    return [arguments](const QDBusMessage& call, const QDBusConnection& bus) {
        bus.send(call.createReply(arguments));
    };
}

Answer replyWithError() {
    return [](const QDBusMessage& call, const QDBusConnection& bus) {
        bus.send(call.createErrorReply("org.example.Refused", "played"));
    };
}

PlayedObject::PlayedObject(const QDBusConnection& bus, const QString& name, const QString& path)
    : bus_(bus), name_(name), path_(path) {
    bus_.registerVirtualObject(path_, this);
    appear();
}

PlayedObject::~PlayedObject() {
    bus_.unregisterObject(path_);
    disappear();
}

bool PlayedObject::handleMessage(const QDBusMessage& call, const QDBusConnection& bus) {
    ++calls[call.member()];
    const auto answer = answers.find(call.member());
    if (answer == answers.end()) return false;
    answer->second(call, bus);
    return true;
}

PlayedFcitx::PlayedFcitx(const QDBusConnection& bus) : PlayedObject(bus, "org.fcitx.Fcitx5", "/controller") {
    behave();
}

void PlayedFcitx::behave() {
    const AvailableMethods available{{"hangul", "Hangul", "한글", "", "", "ko"}};
    answers["CurrentInputMethodGroup"] = replyWith({"Default"});
    answers["InputMethodGroupInfo"] = replyWith({"us", QVariant::fromValue(members)});
    answers["AvailableInputMethods"] = replyWith({QVariant::fromValue(available)});
    answers["CurrentInputMethod"] = [this](const QDBusMessage& call, const QDBusConnection& bus) {
        bus.send(call.createReply(current));
    };
    answers["State"] = [this](const QDBusMessage& call, const QDBusConnection& bus) {
        bus.send(call.createReply(current.isEmpty() ? 0 : 2));
    };
    answers["SetCurrentIM"] = [this](const QDBusMessage& call, const QDBusConnection& bus) {
        if (!current.isEmpty()) current = call.arguments().constFirst().toString();
        bus.send(call.createReply());
    };
}

} // namespace hopsel::test
