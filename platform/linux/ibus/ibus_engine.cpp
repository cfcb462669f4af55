#include "platform/linux/ibus/ibus_engine.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <algorithm>
#include <libintl.h>

namespace hopsel::ibus_engine {

namespace {

constexpr qsizetype longestID = 128, longestName = 64, longestLanguage = 16, longestLayout = 64;

std::string plain(const QString& told, qsizetype longest) {
    QString text = told.left(longest);
    for (QChar& character : text) {
        if (!character.isPrint() && !character.isSurrogate()) character = u' ';
    }
    return text.simplified().toUtf8().toStdString();
}

bool isMadeOf(const QString& text, const char* others) {
    const auto isFit = [others = QString::fromLatin1(others)](QChar c) {
        return (c.unicode() < 0x80 && c.isLetterOrNumber()) || others.contains(c);
    };
    return std::all_of(text.begin(), text.end(), isFit);
}

/// In the words of the package that the engine comes from, which for plain layouts is the layouts' own.
QString localized(const QString& name, QString domain, const QString& id) {
    if (id.startsWith("xkb:")) domain = "xkeyboard-config";
    if (name.isEmpty() || domain.isEmpty() || domain.size() > longestID || !isMadeOf(domain, "-_.+"))
        return name;
    const QByteArray catalog = domain.toUtf8();
    bind_textdomain_codeset(catalog.constData(), "UTF-8");
    return QString::fromUtf8(dgettext(catalog.constData(), name.toUtf8().constData()));
}

QString word(const QString& told) {
    return told == "default" || told.size() > longestLayout || !isMadeOf(told, "-_") ? QString() : told;
}

/// The structure that a description is, if it is one; versions add fields at the end.
std::optional<IbusEngine> engine(const QVariant& value) {
    if (!value.canConvert<QDBusArgument>()) return std::nullopt;
    const auto fields = value.value<QDBusArgument>();
    if (!fields.currentSignature().startsWith("(sa{sv}ssssssssusssssss")) return std::nullopt;
    QString type, id, name, description, language, license, author, icon, layout;
    QString hotkeys, symbol, setup, variant, option, version, domain;
    uint rank = 0;
    QVariantMap attachments;
    fields.beginStructure();
    fields >> type >> attachments >> id >> name >> description >> language >> license >> author >> icon >>
        layout >> rank >> hotkeys >> symbol >> setup >> variant >> option >> version >> domain;
    fields.endStructure();
    if (!isUsableID(id)) return std::nullopt;
    std::string shown = plain(localized(name, domain, id), longestName);
    return IbusEngine{id, shown.empty() ? id.toStdString() : std::move(shown),
                      plain(language, longestLanguage), ibus_engine::layout(layout, variant)};
}

QVariant inner(const QVariant& variant) { return qvariant_cast<QDBusVariant>(variant).variant(); }

} // namespace

bool isUsableID(const QString& id) {
    const auto isFit = [](QChar c) { return c.isPrint() && !c.isSpace(); };
    return !id.isEmpty() && id.size() <= longestID && std::all_of(id.begin(), id.end(), isFit);
}

XkbLayout layout(const QString& told, const QString& variant) {
    const qsizetype bracket = told.indexOf('(');
    const bool hasBrackets = bracket > 0 && told.endsWith(')');
    const QString name = word(hasBrackets ? told.left(bracket) : told);
    if (name.isEmpty()) return {};
    const bool isVariantInside = hasBrackets && variant.isEmpty();
    return {name.toStdString(),
            word(isVariantInside ? told.mid(bracket + 1).chopped(1) : variant).toStdString()};
}

std::optional<std::vector<IbusEngine>> described(const QDBusMessage& reply) {
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != "av") return std::nullopt;
    std::vector<IbusEngine> engines;
    const auto list = reply.arguments().constFirst().value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd() && engines.size() < maxEngines) {
        QDBusVariant item;
        list >> item;
        if (auto described = engine(item.variant())) engines.push_back(*std::move(described));
    }
    list.endArray();
    return engines;
}

std::optional<QString> globalEngine(const QDBusMessage& reply) {
    // Before the first engine is set there is an error in place of the value.
    if (reply.type() == QDBusMessage::ErrorMessage &&
        reply.errorName() == "org.freedesktop.DBus.Error.Failed")
        return QString();
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != "v") return std::nullopt;
    // The description comes in a variant of its own.
    QVariant value = inner(reply.arguments().constFirst());
    if (value.userType() == qMetaTypeId<QDBusVariant>()) value = inner(value);
    const std::optional<IbusEngine> current = engine(value);
    if (!current) return std::nullopt;
    return current->id;
}

} // namespace hopsel::ibus_engine
