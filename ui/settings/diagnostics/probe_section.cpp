#include "ui/settings/diagnostics/probe_section.h"

#include "ui/design/texts.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace hopsel {

using design::Button;
using design::Text;
using design::TextStyle;
using design::Tone;
using l10n::Key;

namespace {

struct Answer {
    Key text;
    Tone tone;
};

Answer answer(ProbeResult result) {
    switch (result) {
    case ProbeResult::received: return {Key::diagProbeReceived, Tone::positive};
    case ProbeResult::arrivedAsOtherKey: return {Key::diagProbeOther, Tone::warning};
    case ProbeResult::noSignal: return {Key::diagProbeWaiting, Tone::secondary};
    }
    return {Key::diagProbeWaiting, Tone::secondary};
}

} // namespace

ProbeSection::ProbeSection(AppModel& model, QWidget* parent)
    : QWidget(parent),
      model_(model),
      noRule_((new Text(text(Key::diagProbeNoRule), TextStyle::body, Tone::secondary))->wrapped()),
      row_(new QWidget),
      start_(new Button({}, Button::Kind::secondary)),
      result_((new Text)->wrapped()),
      hint_((new Text(text(Key::diagProbeNoSignal), TextStyle::callout, Tone::secondary))->wrapped()) {
    auto* row = new QHBoxLayout(row_);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(12);
    row->addWidget(start_);
    row->addWidget(result_, 1);
    connect(start_, &QPushButton::clicked, this, [this] { model_.startProbe(); });
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    column->addWidget((new Text(text(Key::diagProbeTitle), TextStyle::headline))->wrapped());
    column->addWidget(noRule_);
    column->addWidget(row_);
    column->addWidget(hint_);
}

void ProbeSection::refresh() {
    const auto trigger = model_.probeTrigger();
    noRule_->setVisible(!trigger);
    row_->setVisible(trigger.has_value());
    const auto result = model_.probeResult();
    hint_->setVisible(result == ProbeResult::noSignal);
    if (!trigger) return;
    const std::string key = l10n::keyName(*trigger);
    start_->setText(text(Key::diagProbeButton, {key}));
    if (result) result_->setTone(answer(*result).tone);
    result_->setText(result ? text(answer(*result).text, {key}) : QString());
}

} // namespace hopsel
