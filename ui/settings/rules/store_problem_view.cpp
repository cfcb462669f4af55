#include "ui/settings/rules/store_problem_view.h"

#include "ui/design/boxes.h"
#include "ui/design/buttons.h"
#include "ui/design/following.h"
#include "ui/design/reading_text.h"
#include "ui/design/texts.h"

#include <QHBoxLayout>

namespace hopsel {

using design::Button;
using design::TextStyle;
using design::Tone;
using l10n::Key;

StoreProblemView::StoreProblemView(AppModel& model, QWidget* parent)
    : QWidget(parent), model_(model), column_(new QVBoxLayout(this)) {
    column_->setContentsMargins(0, 0, 0, 0);
    hide();
    model_.observe(this, [this] { refresh(); });
    refresh();
}

void StoreProblemView::refresh() {
    if (shown_ == model_.storeProblem()) return;
    shown_ = model_.storeProblem();
    design::clear(column_);
    setVisible(shown_.has_value());
    if (!shown_) return;
    auto* more = new QWidget;
    auto* column = new QVBoxLayout(more);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(places(*shown_));
    failure_ = new QVBoxLayout;
    column->addLayout(failure_);
    column->addWidget(actions(*shown_));
    const bool isNewer = std::holds_alternative<store_problem::NewerVersion>(*shown_);
    column_->addWidget(design::banner("exclamationmark.triangle.fill",
                                      text(isNewer ? Key::storeNewerVersion : Key::storeCorrupt), more));
}

QWidget* StoreProblemView::places(const StoreProblem& problem) {
    std::vector<std::string> lines{l10n::t(Key::settingsFilePath, {model_.settingsFile().string()})};
    const auto* corrupt = std::get_if<store_problem::Corrupt>(&problem);
    if (corrupt != nullptr && corrupt->backupPath)
        lines.push_back(l10n::t(Key::settingsFileBackup, {*corrupt->backupPath}));
    if (model_.canUseGoodCopy())
        lines.push_back(l10n::t(Key::settingsFileGoodCopy, {model_.goodCopyPath().string()}));
    QStringList paragraphs;
    for (const std::string& line : lines) paragraphs += QString::fromStdString(line);
    auto* words = new design::ReadingText(TextStyle::caption);
    words->setContent(paragraphs.join('\n'));
    return words;
}

QWidget* StoreProblemView::actions(const StoreProblem& problem) {
    auto* line = new QWidget;
    auto* row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    const auto add = [&](Key name, auto act) {
        auto* button = new Button(text(name), Button::Kind::secondary);
        connect(button, &QPushButton::clicked, this, act);
        row->addWidget(button);
        return button;
    };
    add(Key::settingsFileShow, [this] { model_.showSettingsFile(); });
    // What a newer version wrote is all right; it is this program that is too old.
    if (!std::holds_alternative<store_problem::NewerVersion>(problem)) {
        if (model_.canUseGoodCopy()) add(Key::settingsFileUseCopy, [this] { tell(model_.useGoodCopy()); });
        auto* afresh = add(Key::settingsFileAfresh, [this] { tell(model_.startAfresh()); });
        afresh->setToolTip(text(Key::settingsFileAfreshHelp));
        afresh->setAccessibleDescription(text(Key::settingsFileAfreshHelp));
    }
    row->addStretch(1);
    return line;
}

void StoreProblemView::tell(const EditResult& result) {
    const auto* failed = std::get_if<edit_result::Failed>(&result);
    if (failed == nullptr) return; // the problem goes, and this with it
    design::clear(failure_);
    failure_->addWidget(design::messageLine(
        "exclamationmark.circle", QString::fromStdString(l10n::t(Key::settingsFileFailed, {failed->message})),
        Tone::warning));
}

} // namespace hopsel
