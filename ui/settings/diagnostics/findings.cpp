#include "ui/settings/diagnostics/findings.h"

#include "core/base/overloaded.h"
#include "model/texts/platform_notes.h"
#include "ui/design/boxes.h"
#include "ui/design/texts.h"

#include <QStringList>

namespace hopsel {

using design::Text;
using design::TextStyle;
using design::Tone;
using l10n::Key;

namespace {

constexpr int betweenLines = 8;

QString describe(const ConflictWarning& warning) {
    return std::visit(Overloaded{
                          [](const conflict_warning::TriggerArrivesAsOtherKey& other) {
                              return text(Key::diagWarnTrigger, {l10n::keyName(other.expected)});
                          },
                          [](const conflict_warning::RepeatedTapDisabled& repeated) {
                              return text(Key::diagWarnTapDisabled, {std::to_string(repeated.count)});
                          },
                          [](const conflict_warning::RepeatedSwitchFailures& repeated) {
                              return text(Key::diagWarnSwitchFailures, {std::to_string(repeated.count)});
                          },
                      },
                      warning);
}

QVBoxLayout* columnIn(QWidget* widget, int spacing) {
    auto* column = new QVBoxLayout(widget);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(spacing);
    return column;
}

} // namespace

Findings::Findings(AppModel& model, QWidget* parent)
    : QWidget(parent),
      model_(model),
      warnings_(new QWidget),
      lines_(new QVBoxLayout),
      apps_((new Text)->wrapped()),
      secureInput_((new Text({}, TextStyle::callout, Tone::secondary))->wrapped()) {
    QVBoxLayout* warnings = columnIn(warnings_, betweenLines);
    warnings->addWidget((new Text(text(Key::diagWarningsTitle), TextStyle::headline))->wrapped());
    lines_->setSpacing(betweenLines);
    warnings->addLayout(lines_);
    QVBoxLayout* column = columnIn(this, 16);
    column->addWidget(warnings_);
    column->addWidget(appsSection());
    column->addWidget(secureInput_);
}

QWidget* Findings::appsSection() {
    auto* section = new QWidget;
    QVBoxLayout* column = columnIn(section, betweenLines);
    column->addWidget((new Text(text(Key::diagAppsTitle), TextStyle::headline))->wrapped());
    column->addWidget(apps_);
    column->addWidget((new Text(text(Key::diagAppsNote), TextStyle::callout, Tone::secondary))->wrapped());
    return section;
}

void Findings::refresh() {
    showWarnings();
    showSecureInput();
    QStringList names;
    for (const KnownApp& app : model_.detectedApps())
        names += QString::fromUtf8(app.name.data(), static_cast<qsizetype>(app.name.size()));
    apps_->setTone(names.isEmpty() ? Tone::secondary : Tone::primary);
    apps_->setText(names.isEmpty() ? text(Key::diagAppsNone) : names.join(", "));
}

void Findings::showSecureInput() {
    const SecureInputState state = model_.secureInputState();
    secureInput_->setVisible(state != SecureInputState::watching);
    secureInput_->setText(
        QString::fromStdString(l10n::note(state == SecureInputState::off ? PlatformNote::passwordsPartlyKnown
                                                                         : PlatformNote::passwordsUnknown)));
}

void Findings::showWarnings() {
    std::vector<ConflictWarning> current = model_.diagnosticWarnings();
    warnings_->setVisible(!current.empty());
    if (current == shown_) return;
    shown_ = std::move(current);
    design::clear(lines_);
    for (const ConflictWarning& warning : shown_)
        lines_->addWidget(design::messageLine("exclamationmark.triangle.fill", describe(warning),
                                              Tone::warning, Tone::warning));
}

} // namespace hopsel
