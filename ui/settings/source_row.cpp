#include "ui/settings/source_row.h"

#include "model/menu/source_label.h"
#include "model/texts/platform_notes.h"
#include "ui/design/reading_text.h"
#include "ui/design/texts.h"

#include <QHBoxLayout>

namespace hopsel {

using design::Plate;
using design::Text;
using design::TextStyle;
using design::Tone;
using l10n::Key;

SourceRow::SourceRow(const InputSourceInfo& source, bool isCurrent, QWidget* parent)
    : QWidget(parent), current_(new Plate(text(Key::sourceCurrent), Plate::Kind::tag, Tone::accent)) {
    const QString name = QString::fromStdString(source.name);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 8, 0, 8);
    row->setSpacing(10);
    const QString label = QString::fromStdString(source_label::label(source.languages, source.name));
    row->addWidget(new Plate(label, Plate::Kind::sourceLabel));

    auto* texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget((new Text(name))->elided());
    auto* identifier = new design::ReadingText(TextStyle::caption, Tone::secondary);
    identifier->setAccessibleName(name);
    identifier->setContent(QString::fromStdString(source.id));
    texts->addWidget(identifier);
    if (const auto note = l10n::limitNote(source.limit))
        texts->addWidget(
            (new Text(QString::fromStdString(*note), TextStyle::caption, Tone::warning))->wrapped());
    row->addLayout(texts, 1);

    row->addWidget(current_);
    setCurrent(isCurrent);
    if (!source.isSelectCapable) {
        const QString notSelectable = text(Key::sourceNotSelectable);
        row->addWidget(new Plate(notSelectable, Plate::Kind::tag, Tone::secondary));
    }
}

} // namespace hopsel
