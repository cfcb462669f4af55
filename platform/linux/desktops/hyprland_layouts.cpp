#include "platform/linux/desktops/hyprland_layouts.h"

#include "platform/linux/base/told_text.h"
#include "platform/linux/sources/platform_errors.h"
#include "platform/linux/xkb/xkb_layout_registry.h"

#include <QString>
#include <algorithm>
#include <utility>

namespace hopsel {

namespace {

constexpr const char* sourceType = "HyprlandLayout";

std::vector<InputSourceInfo> sourcesOf(const HyprlandKeyboard& keyboard) {
    const auto descriptions = XkbLayoutRegistry().describe(keyboard.layouts);
    std::vector<InputSourceInfo> sources;
    for (std::size_t i = 0; i < keyboard.ids.size(); ++i) {
        if (keyboard.ids[i].empty()) continue;
        const std::string& name = descriptions[i].name;
        sources.push_back({keyboard.ids[i], name.empty() ? keyboard.ids[i] : name, sourceType,
                           descriptions[i].languages, true});
    }
    return sources;
}

} // namespace

HyprlandLayouts::HyprlandLayouts() {
    ipc_.onOpened = [this] { ask(); };
    ipc_.onClosed = [this] {
        isAsking_ = isStale_ = isReadBack_ = false;
        open_ = 0;
        keyboards_.clear();
        sources_.clear();
        forget(select_result::Failed{platform_error::frameworkGone});
    };
    ipc_.onEvent = [this](const QByteArray& name, const QByteArray& data) { takeEvent(name, data); };
    retry();
}

void HyprlandLayouts::retry() { ipc_.isOpen() ? ask() : ipc_.open(); }

InputFramework::Retries HyprlandLayouts::retries() const {
    if (ipc_.isOpen()) return Retries::whileUsed;
    return qEnvironmentVariableIsSet("HYPRLAND_INSTANCE_SIGNATURE") ? Retries::always : Retries::never;
}

SelectResult HyprlandLayouts::select(const std::string& id) {
    if (!ipc_.isOpen()) return select_result::Failed{platform_error::frameworkGone};
    const auto isIt = [&id](const InputSourceInfo& source) { return source.id == id; };
    if (std::none_of(state().sources.begin(), state().sources.end(), isIt)) return select_result::NotFound{};
    accept(id);
    wanted_ = id;
    isReadBack_ = false;
    ++request_;
    const std::vector<QByteArray> commands = hyprland_keyboards::switchCommands(keyboards_, id);
    open_ = commands.size();
    for (const QByteArray& command : commands)
        ipc_.ask(command,
                 [this, request = request_](const QByteArray& answer) { takeAnswer(answer, request); });
    return select_result::Selected{};
}

// One at a time; what is told meanwhile may be newer than the answer.
void HyprlandLayouts::ask() {
    isStale_ = isAsking_;
    if (std::exchange(isAsking_, true)) return;
    ipc_.ask("j/devices", [this](const QByteArray& answer) { takeDevices(answer); });
}

void HyprlandLayouts::takeDevices(const QByteArray& answer) {
    isAsking_ = false;
    auto keyboards = hyprland_keyboards::parse(answer);
    if (!keyboards) return ipc_.close();
    const bool wasStale = isStale_;
    if (wasStale) ask();
    const bool areSame = !keyboards->empty() && !keyboards_.empty() &&
                         keyboards->front().layouts == keyboards_.front().layouts;
    keyboards_ = std::move(*keyboards);
    if (!areSame)
        sources_ = keyboards_.empty() ? std::vector<InputSourceInfo>() : sourcesOf(keyboards_.front());
    update();
    if (!wasStale && std::exchange(isReadBack_, false) && state().currentID != wanted_)
        refuse(select_result::Failed{platform_error::frameworkRefused});
}

void HyprlandLayouts::takeEvent(const QByteArray& name, const QByteArray& data) {
    if (name == "configreloaded") return ask();
    if (name != "activelayout") return;
    // Names of keyboards have no comma; those of layouts may.
    const qsizetype comma = data.indexOf(',');
    const std::string keyboard = data.first(std::max<qsizetype>(comma, 0)).toStdString();
    const std::string layout = told_text::plain(QString::fromUtf8(data.sliced(comma + 1)));
    const auto found = std::find_if(keyboards_.begin(), keyboards_.end(),
                                    [&](const HyprlandKeyboard& it) { return it.name == keyboard; });
    const auto position =
        found != keyboards_.end() ? hyprland_keyboards::positionOf(*found, layout) : std::nullopt;
    if (!position || isAsking_) return ask();
    found->activeName = layout;
    found->active = position;
    update();
}

void HyprlandLayouts::takeAnswer(const QByteArray& answer, unsigned request) {
    if (request != request_ || open_ == 0) return; // of a switch that has been overtaken
    --open_;
    if (answer.trimmed() != "ok") {
        open_ = 0;
        return refuse(select_result::Failed{platform_error::frameworkRefused});
    }
    if (open_ > 0 || state().currentID == wanted_) return;
    isReadBack_ = true; // no event has come yet
    ask();
}

void HyprlandLayouts::update() {
    std::optional<std::string> current;
    if (!keyboards_.empty() && keyboards_.front().active) {
        const std::string& id = keyboards_.front().ids[*keyboards_.front().active];
        if (!id.empty()) current = id;
    }
    remember({!sources_.empty(), sources_, current});
}

} // namespace hopsel
