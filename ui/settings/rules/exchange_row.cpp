#include "ui/settings/rules/exchange_row.h"

#include "core/base/overloaded.h"
#include "ui/design/boxes.h"
#include "ui/design/buttons.h"
#include "ui/design/texts.h"

#include <QFile>
#include <QFileDialog>
#include <QHBoxLayout>

namespace hopsel {

using design::Button;
using design::Tone;
using l10n::Key;

namespace {

std::string words(const import_result::Taken& taken) {
    std::string said = l10n::t(Key::importDone, {std::to_string(taken.added)});
    if (taken.known > 0) said += ' ' + l10n::t(Key::importKnown, {std::to_string(taken.known)});
    std::string keys;
    for (const Trigger& trigger : taken.keysUsed)
        keys += (keys.empty() ? "" : ", ") + l10n::triggerName(trigger);
    if (!keys.empty()) said += ' ' + l10n::t(Key::importKeysUsed, {keys});
    return said;
}

std::string words(const ImportResult& result) {
    return std::visit(
        Overloaded{
            [](const import_result::Taken& taken) { return words(taken); },
            [](const import_result::NotRules&) { return l10n::t(Key::importNotRules); },
            [](const import_result::NewerVersion&) { return l10n::t(Key::importNewer); },
            [](const edit_result::Failed& failed) { return l10n::t(Key::importFailed, {failed.message}); },
        },
        result);
}

} // namespace

ExchangeRow::ExchangeRow(AppModel& model, QWidget* first, QWidget* parent)
    : QWidget(parent),
      model_(model),
      import_(new Button(text(Key::rulesImport), Button::Kind::secondary)),
      export_(new Button(text(Key::rulesExport), Button::Kind::secondary)),
      said_(new QVBoxLayout) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    auto* row = new QHBoxLayout;
    row->setSpacing(10);
    row->addWidget(first);
    row->addStretch(1);
    row->addWidget(import_);
    row->addWidget(export_);
    column->addLayout(row);
    column->addLayout(said_);
    connect(import_, &QPushButton::clicked, this, [this] { askForFile(false); });
    connect(export_, &QPushButton::clicked, this, [this] { askForFile(true); });
    refresh();
}

void ExchangeRow::refresh() {
    import_->setEnabled(model_.canEditRules());
    export_->setEnabled(model_.canEditRules() && !model_.rules().empty());
}

QWidget* ExchangeRow::firstButton() const { return import_; }
QWidget* ExchangeRow::lastButton() const { return export_; }

void ExchangeRow::askForFile(bool isExport) {
    design::clear(said_);
    auto* dialog = new QFileDialog(window(), text(isExport ? Key::rulesExport : Key::rulesImport));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(isExport ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog->setFileMode(isExport ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog->setNameFilter("*.json");
    dialog->setDirectory(QDir::homePath());
    if (isExport) {
        dialog->setDefaultSuffix("json");
        dialog->selectFile("hopsel-rules.json");
    }
    connect(dialog, &QFileDialog::fileSelected, this, [this, isExport](const QString& file) {
        if (isExport)
            exportTo(file);
        else
            importFrom(file);
    });
    dialog->open();
}

void ExchangeRow::exportTo(const QString& file) {
    const EditResult result = model_.exportRules(QFile::encodeName(file).toStdString());
    const auto* failed = std::get_if<edit_result::Failed>(&result);
    if (failed == nullptr)
        tell(QString::fromStdString(l10n::t(Key::exportDone, {file.toStdString()})), Tone::secondary);
    else
        tell(QString::fromStdString(l10n::t(Key::exportFailed, {failed->message})), Tone::warning);
}

void ExchangeRow::importFrom(const QString& file) {
    const ImportResult result = model_.importRules(QFile::encodeName(file).toStdString());
    const auto* taken = std::get_if<import_result::Taken>(&result);
    const bool isWhole = taken != nullptr && taken->keysUsed.empty();
    tell(QString::fromStdString(words(result)), isWhole ? Tone::secondary : Tone::warning);
}

void ExchangeRow::tell(const QString& words, Tone tone) {
    design::clear(said_);
    const bool isGood = tone == Tone::secondary;
    said_->addWidget(design::messageLine(isGood ? "checkmark" : "exclamationmark.circle", words, tone, tone));
}

} // namespace hopsel
