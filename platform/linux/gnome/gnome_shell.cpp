#include "platform/linux/gnome/gnome_shell.h"

#include "platform/linux/base/told_text.h"
#include "platform/linux/sources/platform_errors.h"
#include "platform/linux/xkb/xkb_layout_registry.h"

#include <QDBusArgument>
#include <algorithm>
#include <utility>

namespace hopsel {

namespace {

bool hasSource(const std::vector<InputSourceInfo>& sources, const std::string& id) {
    return std::any_of(sources.begin(), sources.end(),
                       [&id](const InputSourceInfo& source) { return source.id == id; });
}

std::string idOf(const QString& type, const QString& name) {
    const bool isKnown = type == u"xkb" || type == u"ibus";
    const std::string plain = told_text::plain(name);
    return isKnown && !plain.empty() ? type.toStdString() + ":" + plain : "";
}

/// IBus's "zh_TW" is "zh" here, as elsewhere.
std::vector<std::string> languagesIn(const QString& told) {
    std::string language = told_text::plain(told.section(u'_', 0, 0));
    return language.empty() ? std::vector<std::string>() : std::vector<std::string>{std::move(language)};
}

std::vector<InputSourceInfo> sourcesIn(const QDBusArgument& told) {
    std::vector<InputSourceInfo> sources;
    std::vector<XkbLayout> layouts;     // none for an engine of IBus
    const QDBusArgument& reader = told; // the non-const functions write
    reader.beginArray();
    while (!reader.atEnd() && sources.size() < told_text::maxSources) {
        QString type;
        QString name;
        QString shown;
        QString language;
        reader.beginStructure();
        reader >> type >> name >> shown >> language;
        reader.endStructure();
        const std::string id = idOf(type, name);
        if (id.empty() || hasSource(sources, id)) continue;
        std::string text = told_text::plain(shown);
        if (text.empty()) text = id;
        sources.push_back({id, std::move(text), type.toStdString(), languagesIn(language), true});
        layouts.push_back({});
        if (type == u"xkb")
            layouts.back() = {told_text::plain(name.section(u'+', 0, 0)),
                              told_text::plain(name.section(u'+', 1))};
    }
    reader.endArray();
    std::vector<XkbLayoutDescription> descriptions = XkbLayoutRegistry().describe(layouts);
    for (std::size_t i = 0; i < sources.size(); ++i) {
        if (!descriptions[i].languages.empty()) sources[i].languages = std::move(descriptions[i].languages);
    }
    return sources;
}

std::optional<std::string> currentIn(const QString& told, const std::vector<InputSourceInfo>& sources) {
    std::string id = told_text::plain(told);
    return hasSource(sources, id) ? std::optional(std::move(id)) : std::nullopt;
}

} // namespace

GnomeShell::GnomeShell(std::shared_ptr<GnomeExtension> extension) : extension_(std::move(extension)) {
    extension_->observe(&context_, [this] { extensionChanged(); });
    extension_->listen("SourcesChanged", "a(ssss)", &context_,
                       [this](const QDBusMessage& signal) { takeSources(signal); });
    extension_->listen("CurrentChanged", "s", &context_, [this](const QDBusMessage& signal) {
        takeCurrent(signal.arguments().constFirst().toString());
    });
}

void GnomeShell::extensionChanged() {
    const bool canSwitch = extension_->isOurs() && extension_->can("switch");
    if (!canSwitch) {
        if (isInCharge()) forget(select_result::Failed{platform_error::frameworkGone});
        return;
    }
    const QVariantList& told = extension_->registration();
    State next{true, sourcesIn(told[2].value<QDBusArgument>()), std::nullopt};
    next.currentID = currentIn(told[3].toString(), next.sources);
    remember(std::move(next));
}

void GnomeShell::takeSources(const QDBusMessage& signal) {
    if (!isInCharge()) return;
    auto sources = sourcesIn(signal.arguments().constFirst().value<QDBusArgument>());
    std::optional<std::string> current = state().currentID;
    if (current && !hasSource(sources, *current)) current.reset(); // the next one is told
    remember({true, std::move(sources), std::move(current)});
}

void GnomeShell::takeCurrent(const QString& id) {
    if (isInCharge()) remember({true, state().sources, currentIn(id, state().sources)});
}

SelectResult GnomeShell::select(const std::string& id) {
    if (!isInCharge()) return select_result::Failed{platform_error::frameworkGone};
    if (!hasSource(state().sources, id)) return select_result::NotFound{};
    accept(id);
    extension_->call("Activate", {QString::fromStdString(id)}, &context_,
                     [this, count = ++requestCount_](const QDBusMessage& reply) {
                         if (count != requestCount_ || reply.type() == QDBusMessage::ReplyMessage) return;
                         const QString error = GnomeExtension::error(reply);
                         if (error == "NotFound")
                             refuse(select_result::NotFound{});
                         else if (error != "Replaced")
                             refuse(select_result::Failed{platform_error::frameworkRefused});
                     });
    return select_result::Selected{};
}

} // namespace hopsel
