#include "ui/settings/diagnostics/report_section.h"

#include "ui/design/buttons.h"
#include "ui/design/texts.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace hopsel {

using design::Button;
using design::ReadingText;
using design::Text;
using design::TextStyle;
using design::Tone;
using l10n::Key;

namespace {

constexpr int reportHeight = 260;

} // namespace

ReportSection::ReportSection(AppModel& model, QWidget* parent)
    : QWidget(parent),
      model_(model),
      title_(new design::Disclosure(text(Key::diagPreview))),
      card_(new design::Card),
      report_(new ReadingText(TextStyle::events)),
      savedTo_(new ReadingText(TextStyle::callout)),
      copied_((new Text(text(Key::diagCopied), TextStyle::callout))->wrapped()) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    column->addWidget(title_);
    report_->setAccessibleName(text(Key::diagPreview));
    report_->setScrolling(design::scaled(reportHeight));
    card_->column()->addWidget(report_);
    column->addWidget(card_);
    connect(title_, &QAbstractButton::toggled, this, [this] { refresh(); });
    column->addWidget(ways());
    column->addWidget(savedTo_);
    column->addWidget(copied_);
    column->addWidget((new Text(text(Key::diagSendHint), TextStyle::callout, Tone::secondary))->wrapped());
}

QWidget* ReportSection::ways() {
    struct Way {
        Key title;
        void (AppModel::*action)();
    };
    constexpr Way all[]{{Key::diagSave, &AppModel::saveReport},
                        {Key::diagMail, &AppModel::composeReportMail},
                        {Key::diagCopy, &AppModel::copyReport}};
    auto* line = new QWidget;
    auto* row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    for (const Way& way : all) {
        auto* button = new Button(text(way.title), Button::Kind::secondary);
        // This section may be gone when the action returns: saving asks the user.
        connect(button, &QPushButton::clicked, &model_, [model = &model_, way] { (model->*way.action)(); });
        row->addWidget(button);
    }
    row->addStretch(1);
    return line;
}

void ReportSection::refresh() {
    const bool isOpen = title_->isChecked();
    if (isOpen) report_->setContent(QString::fromStdString(model_.buildReport()));
    card_->setVisible(isOpen);
    const auto& saved = model_.lastSavedReport();
    if (saved) {
        const QString where = text(Key::diagSavedTo, {saved->string()});
        savedTo_->setContent(where);
        savedTo_->setAccessibleName(where);
    }
    savedTo_->setVisible(saved.has_value());
    copied_->setVisible(model_.reportCopied());
}

} // namespace hopsel
