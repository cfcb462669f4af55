#include "ui/settings/rules/rules_pane.h"

#include "model/texts/combination_texts.h"
#include "model/texts/l10n.h"
#include "ui/design/boxes.h"
#include "ui/design/buttons.h"
#include "ui/design/sheet.h"
#include "ui/design/text.h"
#include "ui/design/text_field.h"
#include "ui/design/texts.h"
#include "ui/settings/rules/add_rule_view.h"
#include "ui/settings/rules/exchange_row.h"
#include "ui/settings/rules/rule_row.h"
#include "ui/settings/rules/store_problem_view.h"
#include "ui/settings/rules/undo_row.h"

#include <QHBoxLayout>
#include <QHideEvent>
#include <algorithm>
#include <utility>

namespace hopsel {

using design::Button;
using design::Text;
using design::TextStyle;
using design::Tone;
using l10n::Key;

namespace {

/// A combination of four modifiers must not push the sources of every other rule aside.
constexpr int widestTriggerColumn = 160;

} // namespace

RulesPane::RulesPane(AppModel& model, std::shared_ptr<LocalKeyMonitoring> keys, QWidget* parent)
    : PaneContainer(text(Key::rulesTitle), text(Key::rulesSubtitle), parent),
      model_(model),
      keys_(std::move(keys)),
      taken_(new design::Card),
      empty_((new Text(text(Key::rulesEmpty), TextStyle::body, Tone::secondary))->wrapped()),
      card_(new design::Card),
      undo_(new UndoRow(model)),
      add_(new Button(text(Key::rulesAdd), Button::Kind::primary)),
      notice_(new design::Card),
      exchange_(new ExchangeRow(model, add_)),
      try_(design::textField(text(Key::rulesTryField))),
      litFiring_(model.lastFiring().number) {
    const std::string guestKey = l10n::shortcutName(AppModel::guestKey);
    remoteNote_ =
        design::messageLine("info.circle", QString::fromStdString(l10n::t(Key::rulesRemoteNote, {guestKey})),
                            Tone::secondary, Tone::secondary);
    fillTaken();
    fillNotice();
    content()->addWidget(new StoreProblemView(model_));
    content()->addWidget(taken_);
    content()->addWidget(empty_);
    content()->addWidget(card_);
    content()->addWidget(undo_);
    content()->addWidget(notice_);
    content()->addWidget(exchange_);
    content()->addWidget(remoteNote_);
    content()->addWidget(try_);
    connect(add_, &QPushButton::clicked, this, [this] { showAddSheet(); });
    connect(&conflicts_, &QTimer::timeout, this, [this] { model_.refreshConflicts(); });
    model_.observe(this, [this] { refresh(); });
    refresh();
}

RulesPane::~RulesPane() { delete sheet_; }

void RulesPane::fillTaken() {
    takenWords_ = (new Text({}, TextStyle::body, Tone::warning))->wrapped();
    taken_->column()->addWidget(takenWords_);
    auto* buttons = new QHBoxLayout;
    auto* settings = new Button(text(Key::actionOpenAccessibility), Button::Kind::secondary);
    auto* another = new Button(QString::fromStdString(l10n::chooseAnotherText()), Button::Kind::secondary);
    buttons->addWidget(settings);
    buttons->addWidget(another);
    buttons->addStretch(1);
    taken_->column()->addLayout(buttons);
    connect(settings, &QPushButton::clicked, this,
            [this] { model_.perform(MenuAction::openAccessibilitySettings); });
    connect(another, &QPushButton::clicked, this, [this] { chooseAnother(); });
}

void RulesPane::fillNotice() {
    noticeWords_ = (new Text({}, TextStyle::body, Tone::warning))->wrapped();
    again_ = new Button(text(Key::saveAgain), Button::Kind::secondary);
    notice_->column()->addWidget(noticeWords_);
    notice_->column()->addWidget(again_, 0, Qt::AlignLeft);
    connect(again_, &QPushButton::clicked, this, [this] { model_.trySavingAgain(); });
}

void RulesPane::showNotice() {
    const auto& notice = model_.settingsNotice();
    notice_->setVisible(notice.has_value());
    if (!notice) return;
    const bool isNews = std::holds_alternative<settings_notice::ChangedOutside>(*notice);
    noticeWords_->setTone(isNews ? Tone::secondary : Tone::warning);
    noticeWords_->setText(QString::fromStdString(noticeText(*notice)));
    again_->setVisible(std::holds_alternative<settings_notice::SaveFailed>(*notice));
}

void RulesPane::chooseAnother() {
    for (const Rule& rule : model_.rules())
        if (model_.warning(rule.trigger, rule.enabled) == RuleWarning::needsAccessibility)
            return showSheet(rule);
}

void RulesPane::refresh() {
    showNotice();
    const std::vector<std::string> taken = model_.takenCombinations();
    taken_->setVisible(!taken.empty());
    takenWords_->setText(QString::fromStdString(l10n::takenText(taken)));
    if (showsSameRules()) {
        for (std::size_t i = 0; i < rows_.size(); ++i) rows_[i]->refresh(model_.rules()[i]);
    } else {
        rebuildRows();
    }
    const bool hasRules = !rows_.empty();
    empty_->setVisible(!hasRules);
    card_->setVisible(hasRules);
    undo_->refresh();
    exchange_->refresh();
    remoteNote_->setVisible(hasRules);
    try_->setVisible(hasRules);
    add_->setEnabled(model_.canEditRules());
    lightUp();
}

void RulesPane::lightUp() {
    const Firing& firing = model_.lastFiring();
    if (std::exchange(litFiring_, firing.number) == firing.number) return;
    for (RuleRow* row : rows_)
        if (row->rule().id == firing.ruleID) row->lightUp(firing.worked);
}

bool RulesPane::showsSameRules() const {
    return std::equal(rows_.begin(), rows_.end(), model_.rules().begin(), model_.rules().end(),
                      [](const RuleRow* row, const Rule& rule) {
                          return row->rule().id == rule.id && row->rule().trigger == rule.trigger;
                      });
}

// Rows of rules that are still there are kept: one of them may have the focus or an open list.
void RulesPane::rebuildRows() {
    QWidget* const focused = window()->focusWidget();
    const auto focusedRow = std::find_if(rows_.begin(), rows_.end(), [&](const RuleRow* row) {
        return focused != nullptr && row->isAncestorOf(focused);
    });
    const auto focusedIndex = static_cast<std::size_t>(focusedRow - rows_.begin());
    RuleRow* const rowWithFocus = focusedRow != rows_.end() ? *focusedRow : nullptr;

    std::vector<RuleRow*> kept;
    for (const Rule& rule : model_.rules()) {
        const auto old = std::find_if(rows_.begin(), rows_.end(), [&](const RuleRow* row) {
            return row->rule().id == rule.id && row->rule().trigger == rule.trigger;
        });
        if (old == rows_.end()) {
            kept.push_back(new RuleRow(model_, rule));
            kept.back()->onChangeKey = [this, row = kept.back()] { showSheet(row->rule()); };
            continue;
        }
        (*old)->refresh(rule);
        card_->column()->removeWidget(*old);
        kept.push_back(*old);
        rows_.erase(old);
    }
    const bool lostFocus = std::find(rows_.begin(), rows_.end(), rowWithFocus) != rows_.end();
    rows_ = std::move(kept);
    design::clear(card_->column()); // the rows that are left in it, and the dividers
    int column = 0;
    for (const RuleRow* row : rows_) column = std::max(column, row->triggerWidth());
    for (RuleRow* row : rows_) {
        row->setTriggerColumn(std::min(column, design::scaled(widestTriggerColumn)));
        if (row != rows_.front()) card_->column()->addWidget(new design::Divider(Qt::Horizontal));
        card_->column()->addWidget(row);
        row->show(); // not a turn of the loop later than its divider
    }
    orderTabs();
    if (lostFocus) giveFocusNear(focusedIndex);
}

void RulesPane::orderTabs() {
    if (!rows_.empty()) setTabOrder(rows_.back()->deleteButton(), undo_->button());
    setTabOrder(undo_->button(), again_);
    setTabOrder(again_, add_);
    setTabOrder(add_, exchange_->firstButton());
    setTabOrder(exchange_->firstButton(), exchange_->lastButton());
    setTabOrder(exchange_->lastButton(), try_);
}

void RulesPane::showEvent(QShowEvent* event) {
    conflicts_.start(std::chrono::seconds(2));
    PaneContainer::showEvent(event);
    // Before it was in its window the order went in a circle, and the button came after the rows as it was.
    orderTabs();
}

void RulesPane::hideEvent(QHideEvent* event) {
    conflicts_.stop();
    if (!event->spontaneous()) model_.forgetRemoval();
    PaneContainer::hideEvent(event);
    if (!event->spontaneous()) model_.dismissSettingsNotice(); // it was there to be read
}

/// After the rule that had the focus was deleted.
void RulesPane::giveFocusNear(std::size_t index) {
    QWidget* const heir = rows_.empty() ? static_cast<QWidget*>(add_)
                                        : rows_[std::min(index, rows_.size() - 1)]->deleteButton();
    heir->setFocus(Qt::OtherFocusReason);
}

void RulesPane::showSheet(std::optional<Rule> changed) {
    if (sheet_ || !model_.canEditRules()) return;
    changedRule_ = changed ? changed->id : std::string();
    const QPointer<RulesPane> self(this);
    const auto close = [self] {
        if (self) self->closeAddSheet();
    };
    auto* view = new AddRuleView(model_, keys_, std::nullopt, close, nullptr, std::move(changed));
    sheet_ = new design::Sheet(view, window());
    view->focusFirst();
}

void RulesPane::closeAddSheet() {
    if (!sheet_) return;
    sheet_->hide(); // at once; deleted once its button has finished
    sheet_->deleteLater();
    sheet_.clear();
    refresh(); // the row of a changed rule is a new one
    const auto changed = std::find_if(rows_.begin(), rows_.end(),
                                      [&](const RuleRow* row) { return row->rule().id == changedRule_; });
    QWidget* const back = changed != rows_.end() ? (*changed)->keyButton() : add_;
    back->setFocus(Qt::OtherFocusReason);
}

} // namespace hopsel
