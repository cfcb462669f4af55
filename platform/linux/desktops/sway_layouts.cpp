#include "platform/linux/desktops/sway_layouts.h"

#include "platform/linux/base/told_text.h"
#include "platform/linux/desktops/layout_names.h"
#include "platform/linux/sources/platform_errors.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <algorithm>
#include <set>

namespace hopsel {

namespace {

constexpr const char* sourceType = "SwayLayout";
// Before so many are unanswered, sway has long stopped to listen.
constexpr int maxUnanswered = 32;

std::vector<InputSourceInfo> sourcesOf(const std::vector<SwayKeyboard>& keyboards) {
    std::vector<std::string> ids;
    std::vector<std::string> names;
    std::set<std::string> known{""}; // what has no name is not listed
    for (const SwayKeyboard& keyboard : keyboards) {
        for (std::size_t i = 0; i < keyboard.ids.size() && ids.size() < told_text::maxSources; ++i) {
            if (!known.insert(keyboard.ids[i]).second) continue;
            ids.push_back(keyboard.ids[i]);
            names.push_back(keyboard.names[i]);
        }
    }
    const auto descriptions = layout_names::describe(names);
    std::vector<InputSourceInfo> sources;
    sources.reserve(ids.size());
    for (std::size_t i = 0; i < ids.size(); ++i) {
        const auto description = descriptions[i].value_or(XkbLayoutDescription{names[i], {}});
        sources.push_back({ids[i], description.name, sourceType, description.languages, true});
    }
    return sources;
}

bool haveSameLayouts(const std::vector<SwayKeyboard>& some, const std::vector<SwayKeyboard>& others) {
    return std::equal(
        some.begin(), some.end(), others.begin(), others.end(),
        [](const SwayKeyboard& one, const SwayKeyboard& other) { return one.ids == other.ids; });
}

} // namespace

SwayLayouts::SwayLayouts() {
    ipc_.onOpened = [this] {
        ipc_.send(SwayIpc::subscribe, R"(["input"])");
        ask();
    };
    ipc_.onClosed = [this] {
        isAsking_ = isWaiting_ = false;
        unanswered_ = 0;
        keyboards_.clear();
        forget(select_result::Failed{platform_error::frameworkGone});
    };
    ipc_.onMessage = [this](quint32 type, const QByteArray& payload) { take(type, payload); };
    retry();
}

void SwayLayouts::retry() {
    if (ipc_.isOpen()) {
        ask();
        return;
    }
    const QString path = qEnvironmentVariable("SWAYSOCK");
    if (!path.isEmpty()) ipc_.open(path);
}

InputFramework::Retries SwayLayouts::retries() const {
    if (ipc_.isOpen()) return Retries::whileUsed;
    return qEnvironmentVariableIsSet("SWAYSOCK") ? Retries::always : Retries::never;
}

SelectResult SwayLayouts::select(const std::string& id) {
    if (!ipc_.isOpen()) return select_result::Failed{platform_error::frameworkGone};
    const auto isIt = [&id](const InputSourceInfo& source) { return source.id == id; };
    if (std::none_of(state().sources.begin(), state().sources.end(), isIt)) return select_result::NotFound{};
    accept(id);
    wanted_ = id;
    isWaiting_ = isAsking_; // its position may be another by now
    if (isWaiting_) return select_result::Selected{};
    return switchToWanted().value_or(select_result::Selected{});
}

std::optional<SelectResult> SwayLayouts::switchToWanted() {
    const auto command = sway_keyboards::switchCommand(keyboards_, wanted_);
    if (!command || unanswered_ == maxUnanswered)
        return select_result::Failed{platform_error::frameworkRefused};
    ++unanswered_;
    ipc_.send(SwayIpc::runCommand, *command);
    return std::nullopt;
}

void SwayLayouts::take(quint32 type, const QByteArray& payload) {
    switch (type) {
    case SwayIpc::subscribe:
        // Without its events nothing that it has told would stay true.
        if (!QJsonDocument::fromJson(payload)["success"].toBool()) ipc_.close();
        break;
    case SwayIpc::getInputs: takeInputs(payload); break;
    case SwayIpc::inputEvent: takeEvent(payload); break;
    case SwayIpc::runCommand: takeAnswer(payload); break;
    default: break;
    }
}

void SwayLayouts::ask() {
    // What sway tells of before its answer is in the answer.
    if (!std::exchange(isAsking_, true)) ipc_.send(SwayIpc::getInputs);
}

void SwayLayouts::takeInputs(const QByteArray& payload) {
    if (!std::exchange(isAsking_, false)) return;
    auto keyboards = sway_keyboards::parse(payload);
    if (!keyboards) {
        ipc_.close();
        return;
    }
    const bool areSame = haveSameLayouts(*keyboards, keyboards_);
    keyboards_ = std::move(*keyboards);
    if (!areSame) sources_ = sourcesOf(keyboards_);
    if (std::exchange(isWaiting_, false)) {
        if (const auto failure = switchToWanted()) refuse(*failure);
    }
    update();
}

void SwayLayouts::takeEvent(const QByteArray& payload) {
    const QJsonDocument event = QJsonDocument::fromJson(payload);
    const QString change = event["change"].toString();
    if (change == u"added" || change == u"removed" || change == u"xkb_keymap") ask();
    if (change != u"xkb_layout") return;
    const auto changed = SwayKeyboard::from(event["input"].toObject());
    if (!changed) return;
    bool isKnown = false;
    for (SwayKeyboard& keyboard : keyboards_) {
        if (keyboard.identifier != changed->identifier || keyboard.ids != changed->ids) continue;
        keyboard.active = changed->active;
        isKnown = true;
    }
    if (!isKnown) {
        ask();
        return;
    }
    latest_ = changed->identifier;
    update();
}

void SwayLayouts::takeAnswer(const QByteArray& payload) {
    if (unanswered_ == 0) return;
    --unanswered_;
    if (unanswered_ > 0 || isWaiting_) return; // of a command that has been overtaken
    const QJsonArray results = QJsonDocument::fromJson(payload).array();
    const bool isDone = !results.isEmpty() &&
                        std::all_of(results.begin(), results.end(),
                                    [](const QJsonValue& result) { return result["success"].toBool(); });
    if (!isDone)
        refuse(select_result::Failed{platform_error::frameworkRefused});
    else if (state().currentID != wanted_)
        ask(); // no event has come: read it back
}

std::optional<std::string> SwayLayouts::current() const {
    if (keyboards_.empty()) return std::nullopt;
    const auto latest =
        std::find_if(keyboards_.begin(), keyboards_.end(),
                     [this](const SwayKeyboard& keyboard) { return keyboard.identifier == latest_; });
    return (latest == keyboards_.end() ? keyboards_.front() : *latest).activeID();
}

void SwayLayouts::update() { remember({!sources_.empty(), sources_, current()}); }

} // namespace hopsel
