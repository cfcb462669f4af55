#include "ui/settings/diagnostics/recording_row.h"

#include "ui/design/boxes.h"
#include "ui/design/buttons.h"
#include "ui/design/texts.h"

#include <QHBoxLayout>

namespace hopsel {

using design::Button;
using design::Text;
using design::Tone;
using l10n::Key;

RecordingRow::RecordingRow(AppModel& model, QWidget* parent)
    : QWidget(parent), model_(model), dot_(new design::Dot), count_((new Text)->wrapped()) {
    auto* card = new design::Card;
    auto* row = new QHBoxLayout;
    row->setSpacing(10);
    row->addWidget(dot_);
    row->addWidget(count_, 1);
    auto* clear = new Button(text(Key::diagClear), Button::Kind::secondary);
    connect(clear, &QPushButton::clicked, this, [this] { model_.diagnostics().clear(); });
    row->addWidget(clear);
    card->column()->addLayout(row);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(card);
}

void RecordingRow::refresh() {
    const DiagnosticsRecorder& recorder = model_.diagnostics();
    dot_->setTone(recorder.isRecording() ? Tone::problem : Tone::secondary);
    QString words = text(Key::diagRecording, {std::to_string(recorder.entries().size())});
    // The dot that the words begin with is the coloured one beside them.
    static const QString inkDot = QString::fromUtf8("● ");
    if (words.startsWith(inkDot)) words.remove(0, inkDot.size());
    count_->setText(words);
}

} // namespace hopsel
