#include "ui/preview/screens.h"

#include "ui/onboarding/onboarding_view.h"
#include "ui/preview/preview_data.h"
#include "ui/settings/rules/add_rule_view.h"
#include "ui/settings/settings_view.h"

namespace hopsel {

namespace {

using Draw = std::function<bool(QWidget&)>;
using Show = std::function<bool(const Draw&)>;
using Prepare = std::function<void(PreviewModel&)>;

constexpr QSize settingsSize{780, 520};
constexpr QSize onboardingSize{560, 460};

Show settings(SettingsPane pane, const std::function<PreviewModel::Setup()>& setup,
              const Prepare& prepare = {}) {
    return [=](const Draw& draw) {
        PreviewModel model(setup());
        if (prepare) prepare(model);
        SettingsNavigation navigation(pane);
        SettingsView view(model.app(), navigation, std::make_shared<NoLocalKeyMonitoring>());
        return draw(view);
    };
}

Show onboarding(OnboardingStep step) {
    return [=](const Draw& draw) {
        PreviewModel::Setup setup;
        // The steps after the second have their rule.
        if (step == OnboardingStep::permission || step == OnboardingStep::test)
            setup.rules = {preview_data::rightCommandRule()};
        if (step == OnboardingStep::permission)
            setup.state = engine_state::Degraded{DegradedReason::permissionMissing};
        PreviewModel model(setup);
        OnboardingModel steps(model.app(), step);
        OnboardingView view(steps, model.app(), [] {});
        return draw(view);
    };
}

Show addRule(std::optional<Trigger> trigger, PreviewModel::Setup (*setup)()) {
    return [=](const Draw& draw) {
        PreviewModel model(setup());
        AddRuleView view(model.app(), std::make_shared<NoLocalKeyMonitoring>(), trigger, [] {});
        return draw(view);
    };
}

PreviewModel::Setup withoutPermission() {
    PreviewModel::Setup setup = preview_data::usual();
    setup.state = engine_state::Degraded{DegradedReason::permissionMissing};
    setup.shortcutStatus = ShortcutStatus::notNeeded;
    setup.inputMonitoring = false;
    return setup;
}

PreviewModel::Setup withShortcut() {
    PreviewModel::Setup setup = preview_data::usual();
    setup.rules.push_back(preview_data::shiftSpaceRule());
    setup.shortcutStatus = ShortcutStatus::unavailable;
    setup.accessibility = false;
    return setup;
}

PreviewModel::Setup empty() { return {}; }

} // namespace

const std::vector<PreviewScreen>& previewScreens() {
    const Trigger shiftSpace = trigger::Shortcut{{49, {ModifierKey::leftShift}}};
    const Trigger shiftLetter = trigger::Shortcut{{0, {ModifierKey::leftShift}}};
    static const std::vector<PreviewScreen> screens{
        {"rules", settingsSize, settings(SettingsPane::rules, preview_data::usual)},
        {"rules-empty", settingsSize, settings(SettingsPane::rules, empty)},
        {"sources", settingsSize, settings(SettingsPane::sources, preview_data::usual)},
        {"general", settingsSize, settings(SettingsPane::general, preview_data::usual)},
        {"general-permission", settingsSize, settings(SettingsPane::general, withoutPermission)},
        {"diagnostics",
         {780, 760},
         settings(SettingsPane::diagnostics, preview_data::usual, preview_data::playDiagnostics)},
        {"diagnostics-empty", {780, 620}, settings(SettingsPane::diagnostics, preview_data::usual)},
        {"about", settingsSize, settings(SettingsPane::about, preview_data::usual)},
        {"onboarding-key", onboardingSize, onboarding(OnboardingStep::key)},
        {"onboarding-sources", onboardingSize, onboarding(OnboardingStep::sources)},
        {"onboarding-permission", onboardingSize, onboarding(OnboardingStep::permission)},
        {"onboarding-test", onboardingSize, onboarding(OnboardingStep::test)},
        {"rules-shortcut", settingsSize, settings(SettingsPane::rules, withShortcut)},
        {"add-rule-shortcut", {460, 340}, addRule(shiftSpace, preview_data::usual)},
        {"add-rule-shortcut-invalid", {460, 380}, addRule(shiftLetter, preview_data::usual)},
        {"add-rule", {460, 340}, addRule(std::nullopt, preview_data::usual)},
    };
    return screens;
}

} // namespace hopsel
