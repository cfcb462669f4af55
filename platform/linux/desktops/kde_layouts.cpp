#include "platform/linux/desktops/kde_layouts.h"

#include "platform/linux/base/told_text.h"
#include "platform/linux/desktops/layout_names.h"
#include "platform/linux/sources/platform_errors.h"

#include <QDBusArgument>
#include <algorithm>

namespace hopsel {

namespace {

const QString path = QStringLiteral("/Layouts");
const QString interface = QStringLiteral("org.kde.KeyboardLayouts");
constexpr const char* sourceType = "KDELayout";

/// For each layout: short name, label, localized name.
std::optional<QList<QStringList>> layoutsIn(const QDBusMessage& reply) {
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != u"a(sss)") return std::nullopt;
    QList<QStringList> layouts;
    const auto list = reply.arguments().constFirst().value<QDBusArgument>();
    const QDBusArgument& reader = list; // the non-const functions write
    reader.beginArray();
    while (!reader.atEnd() && layouts.size() < qsizetype{told_text::maxSources}) {
        QString layout;
        QString label;
        QString name;
        reader.beginStructure();
        reader >> layout >> label >> name;
        reader.endStructure();
        layouts.append({layout, label, name});
    }
    reader.endArray();
    return layouts;
}

/// A label of the user's own tells a layout from its variants; KDE's is that of all of them.
std::string idOf(const XkbLayout& layout, const std::string& label, const std::string& name) {
    if (layout.layout.empty() && label.empty()) return name.empty() ? "" : "kde:" + name;
    if (!label.empty() && label != layout.layout) return "kde:" + layout.layout + ":" + label;
    return "kde:" + layout.layout + (layout.variant.empty() ? "" : "(" + layout.variant + ")");
}

} // namespace

KdeLayouts::KdeLayouts(std::shared_ptr<BusLink> sessionBus)
    : service_(std::move(sessionBus), "org.kde.keyboard", [this] { followOwner(); }) {
    service_.listen({"", path, interface, "layoutChanged", "u", ""}, [this](const QDBusMessage& signal) {
        layoutChanged(signal.arguments().constFirst().toUInt());
    });
    service_.listen({"", path, interface, "layoutListChanged", "", ""},
                    [this](const QDBusMessage&) { ask(); });
}

void KdeLayouts::retry() {
    if (!service_.owner().isEmpty() && !isInCharge() && !isAsking_) ask();
}

InputFramework::Retries KdeLayouts::retries() const {
    if (service_.owner().isEmpty() || isInCharge()) return Retries::never;
    return hasFailed_ ? Retries::always : Retries::whileUsed;
}

void KdeLayouts::followOwner() {
    isAsking_ = isOutdated_ = hasFailed_ = false;
    wanted_.reset();
    readBack_.reset();
    told_.clear();
    ids_.clear();
    sources_.clear();
    if (service_.owner().isEmpty()) {
        forget(select_result::Failed{platform_error::frameworkGone});
        return;
    }
    ask();
}

void KdeLayouts::call(const char* method, const QVariantList& arguments, BusLink::Answer onAnswer) {
    service_.call(path, interface, method, arguments, &context_, std::move(onAnswer));
}

void KdeLayouts::ask() {
    if (std::exchange(isAsking_, true)) {
        isOutdated_ = true;
        return;
    }
    isOutdated_ = false;
    call("getLayoutsList", {}, [this](const QDBusMessage& reply) { takeList(reply); });
}

void KdeLayouts::takeList(const QDBusMessage& reply) {
    const auto told = layoutsIn(reply);
    hasFailed_ = !told;
    if (!told) {
        isAsking_ = false; // `retry` asks again
        wanted_.reset();
        forget(select_result::Failed{platform_error::frameworkRefused});
        return;
    }
    if (*told != told_) {
        told_ = *told;
        std::vector<std::string> names;
        std::vector<XkbLayout> layouts;
        ids_.clear();
        for (const QStringList& layout : told_) names.push_back(told_text::plain(layout[2]));
        // The short name is that of the variants as well, which may have another language.
        const auto byName = layout_names::layoutsOf(names);
        for (std::size_t i = 0; i < names.size(); ++i) {
            const QStringList& layout = told_[static_cast<qsizetype>(i)];
            const std::string shortName = told_text::plain(layout[0]);
            const bool isKnown = byName[i] && (shortName.empty() || byName[i]->layout == shortName);
            layouts.push_back(isKnown ? *byName[i] : XkbLayout{shortName, ""});
            const XkbLayout named{shortName, layouts.back().variant};
            ids_.push_back(idOf(named, told_text::plain(layout[1]), names[i]));
        }
        ids_ = told_text::distinct(std::move(ids_));
        const auto descriptions = XkbLayoutRegistry().describe(layouts);
        sources_.clear();
        for (std::size_t i = 0; i < ids_.size(); ++i) {
            if (ids_[i].empty()) continue;
            sources_.push_back({ids_[i], names[i].empty() ? ids_[i] : names[i], sourceType,
                                descriptions[i].languages, true});
        }
    }
    // Asked only now: whatever is signalled before the answer comes is older than it.
    call("getLayout", {}, [this](const QDBusMessage& answer) { takeIndex(answer); });
}

void KdeLayouts::takeIndex(const QDBusMessage& reply) {
    isAsking_ = false;
    if (isOutdated_) {
        ask();
        return;
    }
    std::optional<std::string> current;
    if (reply.type() == QDBusMessage::ReplyMessage && reply.signature() == u"u")
        current = idAt(reply.arguments().constFirst().toUInt());
    if (const auto id = std::exchange(wanted_, std::nullopt)) send(*id);
    // Nothing is to be waited for any more: the next toggle starts from what there is.
    const auto id = std::exchange(readBack_, std::nullopt);
    if (id && current != id) refuse(select_result::Failed{platform_error::frameworkRefused});
    remember({!sources_.empty(), sources_, current});
}

std::optional<std::string> KdeLayouts::idAt(std::size_t index) const {
    if (index >= ids_.size() || ids_[index].empty()) return std::nullopt;
    return ids_[index];
}

void KdeLayouts::layoutChanged(unsigned int index) {
    if (!isAsking_ && isInCharge()) remember({true, state().sources, idAt(index)});
}

SelectResult KdeLayouts::select(const std::string& id) {
    if (service_.owner().isEmpty()) return select_result::Failed{platform_error::frameworkGone};
    const auto isIt = [&id](const InputSourceInfo& source) { return source.id == id; };
    if (std::none_of(state().sources.begin(), state().sources.end(), isIt)) return select_result::NotFound{};
    accept(id);
    ++requestCount_;
    wanted_.reset();
    readBack_.reset();
    if (isAsking_)
        wanted_ = id; // its position may be another by now
    else
        send(id);
    return select_result::Selected{};
}

void KdeLayouts::send(const std::string& id) {
    const auto found = std::find(ids_.begin(), ids_.end(), id);
    if (found == ids_.end()) {
        refuse(select_result::NotFound{});
        return;
    }
    const auto index = static_cast<unsigned int>(std::distance(ids_.begin(), found));
    call("setLayout", {index}, [this, id, count = requestCount_](const QDBusMessage& reply) {
        if (count == requestCount_) takeAnswer(reply, id);
    });
}

void KdeLayouts::takeAnswer(const QDBusMessage& reply, const std::string& id) {
    const bool isDone = reply.type() == QDBusMessage::ReplyMessage && reply.signature() == u"b" &&
                        reply.arguments().constFirst().toBool();
    if (!isDone) {
        refuse(select_result::Failed{platform_error::frameworkRefused});
    } else if (state().currentID != id) {
        // No signal has come. It is silent about a layout that it cannot lock, and about one that somebody
        // took back at once.
        readBack_ = id;
        ask();
    }
}

} // namespace hopsel
