#include "ui/settings/diagnostics/events_section.h"

#include "model/texts/event_texts.h"
#include "ui/design/texts.h"

#include <QStringList>
#include <QVBoxLayout>
#include <algorithm>

namespace hopsel {

using design::Text;
using design::TextStyle;
using design::Tone;
using l10n::Key;

namespace {

/// Keeps the pane short; the report has them all.
constexpr std::size_t mostShown = 30;
constexpr int lineGap = 2;

} // namespace

EventsSection::EventsSection(AppModel& model, QWidget* parent)
    : QWidget(parent),
      model_(model),
      empty_((new Text(text(Key::diagEventsEmpty), TextStyle::body, Tone::secondary))->wrapped()),
      card_(new design::Card),
      lines_(new design::ReadingText(TextStyle::events, Tone::primary, lineGap)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    column->addWidget((new Text(text(Key::diagEventsTitle), TextStyle::headline))->wrapped());
    column->addWidget(empty_);
    lines_->setAccessibleName(text(Key::diagEventsTitle));
    card_->column()->addWidget(lines_);
    column->addWidget(card_);
}

void EventsSection::refresh() {
    const DiagnosticEntries& entries = model_.diagnostics().entries();
    QStringList texts;
    const auto nameOf = [this](const std::string& id) { return model_.sourceName(id); };
    for (std::size_t i = entries.size() - std::min(entries.size(), mostShown); i < entries.size(); ++i)
        texts += QString::fromStdString(l10n::eventText(entries[i].kind, nameOf));
    lines_->setContent(texts.join('\n'));
    empty_->setVisible(texts.isEmpty());
    card_->setVisible(!texts.isEmpty());
}

} // namespace hopsel
