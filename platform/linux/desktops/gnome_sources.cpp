#include "platform/linux/desktops/gnome_sources.h"

#include "platform/linux/base/told_text.h"
#include "platform/linux/sources/platform_errors.h"
#include "platform/linux/xkb/xkb_layout_registry.h"

#include <algorithm>

namespace hopsel {

namespace {

using namespace std::chrono_literals;

constexpr const char* settingsInterface = "ca.desrt.dconf.Writer";

/// Empty if it is no source of GNOME's.
std::string idOf(const GnomeSettings::Source& source) {
    const bool isKnown = source.first == u"xkb" || source.first == u"ibus";
    const std::string name = told_text::plain(source.second);
    return isKnown && !name.empty() ? source.first.toStdString() + ":" + name : "";
}

bool hasSource(const std::vector<InputSourceInfo>& sources, const std::string& id) {
    return std::any_of(sources.begin(), sources.end(),
                       [&id](const InputSourceInfo& source) { return source.id == id; });
}

std::vector<InputSourceInfo> sourcesOf(const std::vector<GnomeSettings::Source>& told, bool isSelectable) {
    std::vector<InputSourceInfo> sources;
    std::vector<XkbLayout> layouts;
    for (const GnomeSettings::Source& source : told) {
        const std::string id = idOf(source);
        if (id.empty() || hasSource(sources, id)) continue;
        const QString& name = source.second;
        sources.push_back({id, told_text::plain(name), source.first.toStdString(), {}, isSelectable});
        // "kr+kr104". An engine of IBus has no layout, so nothing is found for it.
        layouts.push_back({});
        if (source.first == u"xkb")
            layouts.back() = {told_text::plain(name.section(u'+', 0, 0)),
                              told_text::plain(name.section(u'+', 1))};
    }
    std::vector<XkbLayoutDescription> descriptions = XkbLayoutRegistry().describe(layouts);
    for (std::size_t i = 0; i < sources.size(); ++i) {
        if (!descriptions[i].name.empty()) sources[i].name = std::move(descriptions[i].name);
        sources[i].languages = std::move(descriptions[i].languages);
    }
    return sources;
}

std::optional<std::string> currentOf(const GnomeSettings::Values& told,
                                     const std::vector<InputSourceInfo>& sources) {
    if (told.isPerWindow || sources.empty()) return std::nullopt;
    for (const GnomeSettings::Source& recent : told.recent) {
        if (std::string id = idOf(recent); hasSource(sources, id)) return id;
    }
    return sources.front().id;
}

} // namespace

GnomeSources::GnomeSources(std::shared_ptr<BusLink> sessionBus, Rules rules)
    : rules_(rules),
      refresh_(0ms, 0ms, [this] { read(); }),
      shell_(std::move(sessionBus), "org.gnome.Shell", [this] { followOwner(); }) {}

void GnomeSources::retry() {
    if (shell_.isOwned()) refresh_.noteChange();
}

void GnomeSources::followOwner() {
    if (!shell_.isOwned()) {
        changes_.reset();
        refresh_.cancel();
        told_.reset();
        forget(select_result::Failed{platform_error::frameworkGone});
        return;
    }
    // The storage's writer tells of changes, to whoever listens; from whomever it comes, it is only a reason
    // to read.
    changes_ = std::make_unique<BusSubscription>(
        shell_.bus(), BusSignal{"", "", settingsInterface, "Notify", "sass", ""},
        [this](const QDBusMessage& signal) { settingsChanged(signal.arguments().constFirst().toString()); });
    read();
}

void GnomeSources::settingsChanged(const QString& path) {
    const QString ours = QString::fromLatin1(GnomeSettings::path);
    if (path.startsWith(ours) || ours.startsWith(path)) refresh_.noteChange();
}

void GnomeSources::read() {
    auto told = settings_.read();
    if (told == told_) return;
    told_ = std::move(told);
    if (!told_) return;
    State next{true, sourcesOf(told_->sources, rules_ == Rules::beforehand), std::nullopt};
    next.currentID = currentOf(*told_, next.sources);
    remember(std::move(next));
}

SelectResult GnomeSources::select(const std::string& id) {
    if (!hasSource(state().sources, id)) return select_result::NotFound{};
    return select_result::Failed{platform_error::desktopCannotSwitch};
}

} // namespace hopsel
