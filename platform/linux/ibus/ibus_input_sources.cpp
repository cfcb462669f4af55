#include "platform/linux/ibus/ibus_input_sources.h"

#include "platform/linux/sources/platform_errors.h"

#include <QDBusError>
#include <algorithm>
#include <chrono>
#include <utility>

namespace hopsel {

namespace {

using namespace std::chrono_literals;

constexpr auto sourcesQuiet = 30ms, sourcesAtMost = 300ms;
constexpr auto selectedQuiet = 3ms, selectedAtMost = 30ms;

constexpr const char* sourceType = "IBusEngine";

std::string sourceID(const QString& engine) { return "ibus:" + engine.toStdString(); }

} // namespace

IbusInputSources::IbusInputSources(std::shared_ptr<BusLink> sessionBus, Log& log)
    : sourcesTimer_(sourcesQuiet, sourcesAtMost, [this] { reportSources(); }),
      selectedTimer_(selectedQuiet, selectedAtMost, [this] { reportSelected(); }),
      layout_(log),
      settings_(sessionBus, [this] { askForEngines(); }),
      bus_({[this] { askForAll(); }, [this] { forget(); }, [this](const QString& id) { takeCurrent(id); },
            [this] { askForEngines(); }}),
      owner_(std::move(sessionBus), [this] { changeOwner(); }) {}

void IbusInputSources::changeOwner() {
    giveUp();
    connect();
}

// Also on an answer that no daemon would give: `retry` begins anew.
void IbusInputSources::giveUp() {
    bus_.close();
    forget();
}

void IbusInputSources::retry() {
    settings_.read();
    connect();
}

InputFramework::Retries IbusInputSources::retries() const {
    if (!owner_.isThere()) return Retries::never;
    return bus_.isConnected() ? Retries::whileUsed : Retries::always;
}

void IbusInputSources::connect() {
    // At the owner change the file may still be the last daemon's, or none: then `retry` finds it.
    if (owner_.isThere()) bus_.open();
}

void IbusInputSources::forget() {
    ++selectCount_;
    ++enginesQuestions_;
    refusal_ = select_result::Failed{platform_error::frameworkGone};
    selecting_.reset();
    requested_.reset();
    unanswered_ = 0;
    isCurrentInDoubt_ = false;
    engines_.clear();
    areEnginesTold_ = false;
    sources_.clear();
    current_.reset();
    updateInCharge();
}

void IbusInputSources::askForAll() {
    askForCurrent();
    askForEngines();
}

void IbusInputSources::askForCurrent() {
    bus_.readProperty("GlobalEngine", [this](const QDBusMessage& reply) {
        const std::optional<QString> engine = ibus_engine::globalEngine(reply);
        engine ? takeCurrent(*engine) : giveUp();
    });
}

void IbusInputSources::askForEngines() {
    if (!bus_.isOpen()) return;
    bus_.call("GetEnginesByNames", {settings_.values().engines},
              [this, question = ++enginesQuestions_](const QDBusMessage& reply) {
                  if (question == enginesQuestions_) takeEngines(reply);
              });
}

void IbusInputSources::takeEngines(const QDBusMessage& reply) {
    const auto described = ibus_engine::described(reply);
    if (!described) return giveUp();
    areEnginesTold_ = true;
    engines_.clear();
    for (const QString& id : settings_.values().engines) {
        const auto engine = std::find_if(described->begin(), described->end(),
                                         [&id](const IbusEngine& candidate) { return candidate.id == id; });
        if (engine != described->end()) engines_.push_back(*engine);
    }
    describe();
}

void IbusInputSources::describe() {
    sources_.clear();
    for (const IbusEngine& engine : engines_) {
        std::vector<std::string> languages;
        if (!engine.language.empty()) languages.push_back(engine.language);
        sources_.push_back({sourceID(engine.id), engine.name, sourceType, std::move(languages), true});
    }
    updateInCharge();
    sourcesTimer_.noteChange();
}

void IbusInputSources::takeCurrent(const QString& engine) {
    // The layout comes first, so that whoever sees the switch as done can type.
    if (selecting_ == engine) applyLayout(engine);
    current_ = ibus_engine::isUsableID(engine) ? engine : QString();
    isCurrentInDoubt_ = false;
    if (engine == requested_) hasBeenCurrent_ = true;
    updateInCharge();
    selectedTimer_.noteChange();
}

std::optional<std::string> IbusInputSources::currentID() {
    if (!isInCharge_ || current_->isEmpty() || isCurrentInDoubt_) return std::nullopt;
    return sourceID(*current_);
}

SelectResult IbusInputSources::select(const std::string& id) {
    if (!isInCharge_) return select_result::Failed{platform_error::frameworkGone};
    const auto found = std::find_if(engines_.begin(), engines_.end(), [&id](const IbusEngine& candidate) {
        return sourceID(candidate.id) == id;
    });
    if (found == engines_.end()) return select_result::NotFound{};
    refusal_.reset();
    selecting_ = found->id;
    requested_ = found->id;
    hasBeenCurrent_ = false;
    if (current_ == selecting_) {
        // No signal will come, unless what was asked before is still to be carried out.
        isCurrentInDoubt_ = unanswered_ > 0;
        if (!isCurrentInDoubt_) applyLayout(found->id);
    }
    ++unanswered_;
    bus_.call("SetGlobalEngine", {found->id}, [this, selection = ++selectCount_](const QDBusMessage& reply) {
        if (--unanswered_ == 0 && isCurrentInDoubt_) askForCurrent();
        if (selection == selectCount_ && reply.type() == QDBusMessage::ErrorMessage) refuse(reply);
    });
    return select_result::Selected{};
}

// That it succeeded is not taken from the reply, which overtakes the signals: one of an earlier switch that
// comes after it would be taken for this one's.
void IbusInputSources::refuse(const QDBusMessage& reply) {
    selecting_.reset();
    const QDBusError::ErrorType kind = QDBusError(reply).type();
    if (kind == QDBusError::NoReply || kind == QDBusError::Disconnected) {
        // The end of the connection is told to each that waits before it is told as such.
        refusal_ = select_result::Failed{platform_error::frameworkGone};
        return;
    }
    // The daemon has one kind of error for everything, and says the rest in English in every language.
    if (reply.errorMessage().startsWith("Cannot find engine"))
        refusal_ = select_result::NotFound{};
    else
        refusal_ = select_result::Failed{platform_error::frameworkRefused};
}

void IbusInputSources::applyLayout(const QString& engineID) {
    selecting_.reset();
    const IbusSettings::Values& settings = settings_.values();
    const auto engine = std::find_if(engines_.begin(), engines_.end(),
                                     [&](const IbusEngine& candidate) { return candidate.id == engineID; });
    if (engine == engines_.end() || settings.keepsSystemLayout) return;
    const XkbLayout& layout = engine->layout;
    const auto isMeant = [&layout](const XkbLayout& other) {
        return other.layout == layout.layout && (other.variant.empty() || other.variant == layout.variant);
    };
    const auto& withoutLatin = settings.layoutsWithoutLatin;
    KeyboardLayout::Wanted wanted{
        layout, std::any_of(withoutLatin.begin(), withoutLatin.end(), isMeant), {}, settings.runsXmodmap};
    for (const IbusEngine& other : engines_) wanted.others.push_back(other.layout);
    layout_.apply(wanted);
}

void IbusInputSources::updateInCharge() {
    const bool isInCharge = current_.has_value() && !sources_.empty();
    if (isInCharge != isInCharge_) {
        isInCharge_ = isInCharge;
        reportedSources_ = sources_;
        reportedID_ = currentID();
        if (onInChargeChanged) onInChargeChanged();
    }
    const bool isAskingNow = isAsking();
    if (std::exchange(reportedAsking_, isAskingNow) != isAskingNow && onAskingChanged) onAskingChanged();
}

void IbusInputSources::reportSources() {
    if (!isInCharge_ || sources_ == reportedSources_) return;
    reportedSources_ = sources_;
    if (onSourcesChanged) onSourcesChanged();
}

void IbusInputSources::reportSelected() {
    std::optional<std::string> id = currentID();
    if (!isInCharge_ || id == reportedID_) return;
    reportedID_ = std::move(id);
    if (onSelectedChanged) onSelectedChanged();
}

} // namespace hopsel
