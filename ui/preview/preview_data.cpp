#include "ui/preview/preview_data.h"

#include "model/texts/l10n.h"

#include <QTimeZone>
#include <QUuid>

namespace hopsel {

namespace {

// A fixed moment, so that two runs give the same pictures.
QDateTime sampleDate() { return {QDate(2026, 11, 16), QTime(1, 42, 23), QTimeZone::utc()}; }

constexpr double sampleUptime = 86400;

bool inKorean() { return l10n::language() == L10nLanguage::ko; }

InputSourceInfo source(const char* id, const char* korean, const char* english, const char* type,
                       const char* language, bool isSelectCapable = true) {
    return {id, inKorean() ? korean : english, type, {language}, isSelectCapable};
}

constexpr const char* layout = "TISTypeKeyboardLayout";
constexpr const char* mode = "TISTypeKeyboardInputMode";

InputSourceInfo abc() { return source("com.apple.keylayout.ABC", "ABC", "ABC", layout, "en"); }
InputSourceInfo dvorak() { return source("com.apple.keylayout.Dvorak", "드보락", "Dvorak", layout, "en"); }
InputSourceInfo korean() {
    return source("com.apple.inputmethod.Korean.2SetKorean", "두벌식", "2-Set Korean", mode, "ko");
}
InputSourceInfo koreanContainer() {
    return source("com.apple.inputmethod.Korean", "한국어", "Korean", "TISTypeKeyboardInputMethodModeEnabled",
                  "ko", false);
}
InputSourceInfo hiragana() {
    return source("com.apple.inputmethod.Kotoeri.RomajiTyping.Japanese", "히라가나", "Hiragana", mode, "ja");
}
InputSourceInfo pinyin() {
    return source("com.apple.inputmethod.SCIM.ITABC", "병음 - 간체", "Pinyin - Simplified", mode, "zh-Hans");
}

Action toggle(const InputSourceInfo& a, const InputSourceInfo& b) {
    return action::Toggle{{a.id, a.name}, {b.id, b.name}};
}

} // namespace

PreviewModel::PreviewModel(const Setup& setup)
    : engine_(std::make_shared<PreviewEngine>(setup.state, setup.shortcutStatus)) {
    *uptime_ = sampleUptime;
    const auto storage = std::make_shared<PreviewStorage>();
    const auto store =
        std::make_shared<RuleStore>(storage->userDataDirectory() / "config.json", storage, [] { return 0; });
    store->load();
    for (const Rule& rule : setup.rules) store->add(rule);
    model_ = std::make_unique<AppModel>(AppModel::Parts{
        .store = store,
        .engine = engine_,
        .directory = std::make_shared<PreviewDirectory>(preview_data::sources(), korean().id),
        .loginItem = std::make_shared<PreviewLoginItem>(),
        .settings = std::make_shared<PreviewSettings>(setup.inputMonitoring, setup.accessibility),
        .preferences = std::make_shared<PreviewPreferences>(),
        .appVersion = "1.0",
        .systemShortcutConflict =
            [](const ShortcutKey& key) { return key == ShortcutKey{49, {ModifierKey::leftControl}}; },
        .diagnostics = recorder_,
        .runningApps = std::make_shared<PreviewApps>(),
        .reportDelivery = std::make_shared<NoReportDelivery>(),
        .secureInput = std::make_shared<PreviewSecureInput>(),
        .environment = {[uptime = uptime_] { return *uptime; }, sampleDate, QTimeZone(9 * 3600), "14.5.0",
                        "arm64"},
    });
    model_->start();
}

void PreviewModel::play(double time, const EngineEvent& event) {
    recorder_->record(diagnostic_kind::Engine{event}, sampleUptime + time);
    engine_->onEvent(event);
}

void PreviewModel::record(double time, KeyEventKind kind, ModifierSet held, KeyVerdict verdict) {
    recorder_->record(diagnostic_kind::Key{kind, held, verdict}, sampleUptime + time);
}

std::vector<InputSourceInfo> preview_data::sources() {
    return {korean(), abc(), hiragana(), pinyin(), dvorak(), koreanContainer()};
}

Rule preview_data::rightCommandRule() {
    return Rule::make(trigger::ModifierTap{ModifierKey::rightCommand}, toggle(korean(), abc()));
}

Rule preview_data::rightOptionRule() {
    return Rule::make(trigger::ModifierTap{ModifierKey::rightOption}, toggle(hiragana(), abc()));
}

Rule preview_data::shiftSpaceRule() {
    // A source that this machine does not have: its row says so.
    const InputSourceRef sebulshik{"com.apple.inputmethod.Korean.390Sebulshik",
                                   inKorean() ? "세벌식 390" : "390 Sebulshik"};
    return Rule::make(trigger::Shortcut{{49, {ModifierKey::leftShift}}},
                      action::Toggle{sebulshik, {abc().id, abc().name}});
}

PreviewModel::Setup preview_data::usual() {
    PreviewModel::Setup setup;
    setup.rules = {rightCommandRule(), rightOptionRule()};
    return setup;
}

void preview_data::playDiagnostics(PreviewModel& model) {
    using namespace key_event_kind;
    constexpr ModifierKey trigger = ModifierKey::rightCommand;
    const std::string ruleId = model.app().rules().front().id;
    const auto tap = [&](double time, bool verified) {
        model.record(time, ModifierDown{trigger}, {trigger}, KeyVerdict::passed);
        model.record(time + 0.09, ModifierUp{trigger}, {}, KeyVerdict::switchRequested);
        model.play(time + 0.1,
                   engine_event::Switched{ruleId, abc().id, korean().id, verified, verified ? 4.0 : 503.0});
    };
    model.app().setDiagnosticsVisible(true);
    tap(0, true);
    for (const double time : {1.4, 1.6, 1.8}) {
        model.record(time, KeyDown{}, {}, KeyVerdict::passed);
        model.record(time + 0.07, KeyUp{}, {}, KeyVerdict::passed);
    }
    for (const double time : {4.0, 9.0, 12.5}) tap(time, false);
    model.play(20, engine_event::SwitchSuppressed{ruleId, SuppressReason::secureInput});
    model.record(24, MouseDown{}, {}, KeyVerdict::passed);
    // Another program turns the right key into the left one.
    model.setUptime(sampleUptime + 30);
    model.app().startProbe();
    model.record(31.2, ModifierDown{ModifierKey::leftCommand}, {ModifierKey::leftCommand},
                 KeyVerdict::passed);
    model.record(31.3, ModifierUp{ModifierKey::leftCommand}, {}, KeyVerdict::passed);
}

} // namespace hopsel
