#include "platform/linux/fcitx/fcitx_replies.h"

#include "platform/linux/base/told_text.h"

#include <QDBusArgument>
#include <QHash>
#include <QSet>
#include <algorithm>
#include <string_view>

namespace hopsel::fcitx {

namespace {

constexpr std::string_view prefix = "fcitx:";

// Far above what Fcitx5 has: it knows some 1500 methods, most of them keyboard layouts.
constexpr qsizetype mostMembers = 500;
constexpr int mostEntries = 20000;
constexpr qsizetype longestText = 200;
constexpr qsizetype longestLanguage = 35;

bool isReply(const QDBusMessage& message, const char* signature) {
    return message.type() == QDBusMessage::ReplyMessage && message.signature() == QLatin1String(signature);
}

bool isMethodName(const QString& text) {
    const auto isFit = [](QChar c) { return c.isPrint() && !c.isSpace(); };
    return !text.isEmpty() && text.size() <= longestText && std::all_of(text.begin(), text.end(), isFit);
}

/// `label` is what the method is to be shown as in a panel: of layouts, which have no language where the
/// names of languages are not installed, a code of two or three letters.
std::vector<std::string> languagesFrom(QString code, const QString& label) {
    const auto isLetter = [](QChar c) { return c >= QChar('a') && c <= QChar('z'); };
    const bool isCode =
        (label.size() == 2 || label.size() == 3) && std::all_of(label.begin(), label.end(), isLetter);
    if (code.isEmpty() && isCode) code = label;
    if (code.isEmpty() || code == "*" || code.size() > longestLanguage) return {}; // "*": all languages
    return {code.replace('_', '-').toStdString()};
}

} // namespace

std::string sourceID(const QString& method) { return std::string(prefix) + method.toStdString(); }

QString methodIn(const std::string& id) { return QString::fromStdString(id.substr(prefix.size())); }

std::optional<QString> textIn(const QDBusMessage& reply) {
    if (!isReply(reply, "s")) return std::nullopt;
    QString text = reply.arguments().constFirst().toString();
    if (text.size() > longestText) return std::nullopt;
    return text;
}

std::optional<int> numberIn(const QDBusMessage& reply) {
    if (!isReply(reply, "i")) return std::nullopt;
    return reply.arguments().constFirst().toInt();
}

std::optional<QStringList> membersIn(const QDBusMessage& reply) {
    if (!isReply(reply, "sa(ss)")) return std::nullopt;
    // Const, or "begin" would begin to write.
    const auto entries = qvariant_cast<QDBusArgument>(reply.arguments().at(1));
    QStringList members;
    QSet<QString> taken;
    entries.beginArray();
    for (int i = 0; i < mostEntries && members.size() < mostMembers && !entries.atEnd(); ++i) {
        QString method, layout;
        entries.beginStructure();
        entries >> method >> layout;
        entries.endStructure();
        if (!isMethodName(method) || taken.contains(method)) continue;
        taken.insert(method);
        members << method;
    }
    entries.endArray(); // or it leaks
    return members;
}

std::optional<std::vector<InputSourceInfo>> sourcesIn(const QDBusMessage& available,
                                                      const QStringList& members) {
    if (!isReply(available, "a(ssssssb)")) return std::nullopt;
    std::vector<InputSourceInfo> sources;
    QHash<QString, std::size_t> positions;
    for (const QString& member : members) {
        positions.insert(member, sources.size());
        sources.push_back({sourceID(member), member.toStdString(), "FcitxInputMethod", {}, true});
    }
    const auto entries = qvariant_cast<QDBusArgument>(available.arguments().constFirst());
    entries.beginArray();
    for (int i = 0; i < mostEntries && !positions.isEmpty() && !entries.atEnd(); ++i) {
        QString method, name, nativeName, icon, label, language;
        bool isConfigurable = false;
        entries.beginStructure();
        entries >> method >> name >> nativeName >> icon >> label >> language >> isConfigurable;
        entries.endStructure();
        const auto position = positions.constFind(method);
        if (position == positions.constEnd()) continue;
        InputSourceInfo& source = sources[*position];
        positions.erase(position); // the first entry counts
        const QString& shown = nativeName.isEmpty() ? name : nativeName;
        const std::string plain = told_text::plain(shown);
        if (!plain.empty()) source.name = plain;
        source.languages = languagesFrom(language, label);
    }
    entries.endArray();
    return sources;
}

} // namespace hopsel::fcitx
