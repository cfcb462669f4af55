#include "ui/settings/sources_pane.h"

#include "ui/design/boxes.h"
#include "ui/design/following.h"
#include "ui/design/texts.h"

namespace hopsel {

using design::Text;
using design::TextStyle;
using design::Tone;
using l10n::Key;

SourcesPane::SourcesPane(AppModel& model, QWidget* parent)
    : PaneContainer(text(Key::sourcesTitle), text(Key::sourcesHelp), parent), model_(model) {
    follow(this, model, [this] { refresh(); });
}

void SourcesPane::refresh() {
    if (shown_ != model_.sources()) rebuild();
    for (std::size_t i = 0; i < rows_.size(); ++i)
        rows_[i]->setCurrent((*shown_)[i].id == model_.currentSourceID());
}

void SourcesPane::rebuild() {
    shown_ = model_.sources();
    rows_.clear();
    design::clear(content());
    if (shown_->empty()) {
        content()->addWidget(
            (new Text(text(Key::sourcesEmpty), TextStyle::body, Tone::secondary))->wrapped());
        return;
    }
    auto* card = new design::Card;
    card->column()->setSpacing(0);
    card->column()->setContentsMargins(12, 4, 12, 4);
    for (const InputSourceInfo& source : *shown_) {
        if (!rows_.empty()) card->column()->addWidget(new design::Divider(Qt::Horizontal));
        rows_.push_back(new SourceRow(source, false));
        card->column()->addWidget(rows_.back());
    }
    content()->addWidget(card);
}

} // namespace hopsel
