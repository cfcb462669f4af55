#include "ui/settings/settings_navigation.h"

#include "model/texts/l10n.h"

namespace hopsel {

QString title(SettingsPane pane) {
    using l10n::Key;
    switch (pane) {
    case SettingsPane::general: return QString::fromStdString(l10n::t(Key::tabGeneral));
    case SettingsPane::sources: return QString::fromStdString(l10n::t(Key::tabSources));
    case SettingsPane::rules: return QString::fromStdString(l10n::t(Key::tabRules));
    case SettingsPane::diagnostics: return QString::fromStdString(l10n::t(Key::tabDiagnostics));
    case SettingsPane::about: return QString::fromStdString(l10n::t(Key::tabAbout));
    }
    return {};
}

QString symbol(SettingsPane pane) {
    switch (pane) {
    case SettingsPane::general: return "gearshape";
    case SettingsPane::sources: return "keyboard";
    case SettingsPane::rules: return "arrow.left.arrow.right";
    case SettingsPane::diagnostics: return "stethoscope";
    case SettingsPane::about: return "info.circle";
    }
    return {};
}

} // namespace hopsel
