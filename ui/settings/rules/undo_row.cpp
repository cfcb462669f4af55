#include "ui/settings/rules/undo_row.h"

#include "ui/design/buttons.h"
#include "ui/design/text.h"
#include "ui/design/texts.h"

#include <QHBoxLayout>
#include <QShortcut>

namespace hopsel {

using design::Button;
using l10n::Key;

UndoRow::UndoRow(AppModel& model, QWidget* parent)
    : QWidget(parent),
      model_(model),
      words_((new design::Text({}, design::TextStyle::callout, design::Tone::secondary))->wrapped()),
      button_(new Button(text(Key::rulesUndo), Button::Kind::secondary)) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(10);
    row->addWidget(words_, 1);
    row->addWidget(button_);
    connect(button_, &QPushButton::clicked, this, [this] { undo(); });
    auto* keys = new QShortcut(QKeySequence::Undo, this);
    connect(keys, &QShortcut::activated, this, [this] { undo(); });
    refresh();
}

void UndoRow::refresh() {
    const std::optional<Rule> removed = model_.removedRule();
    if (removed)
        words_->setText(
            QString::fromStdString(l10n::t(Key::rulesDeleted, {l10n::triggerName(removed->trigger)})));
    setVisible(removed.has_value());
}

QWidget* UndoRow::button() const { return button_; }

void UndoRow::undo() { model_.undoRemoval(); }

} // namespace hopsel
