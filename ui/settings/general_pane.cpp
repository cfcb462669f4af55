#include "ui/settings/general_pane.h"

#include "model/menu/menu_builder.h"
#include "ui/design/boxes.h"
#include "ui/design/following.h"
#include "ui/design/texts.h"
#include "ui/settings/rules/store_problem_view.h"

#include <QHBoxLayout>

namespace hopsel {

using design::Button;
using design::Text;
using design::TextStyle;
using design::Tone;
using l10n::Key;

namespace {

Tone toneOf(StatusLine status) {
    switch (menu_builder::statusLevel(status)) {
    case MenuStatusLevel::ok: return Tone::positive;
    case MenuStatusLevel::neutral: return Tone::secondary;
    case MenuStatusLevel::problem: return Tone::warning;
    }
    return Tone::secondary;
}

/// A row of its own, so that its text can be disabled together with its switch.
QWidget* switchRow(design::Switch* toggle) {
    auto* line = new QWidget;
    auto* row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(12);
    row->addWidget((new Text(toggle->accessibleName()))->wrapped(), 1);
    row->addWidget(toggle);
    return line;
}

} // namespace

GeneralPane::GeneralPane(AppModel& model, QWidget* parent)
    : PaneContainer(text(Key::tabGeneral), {}, parent), model_(model) {
    content()->addWidget(new StoreProblemView(model_));
    content()->addWidget(statusCard());
    content()->addWidget(settingsCard());
    auto* again = new Button(text(Key::generalRunOnboarding), Button::Kind::secondary);
    connect(again, &QPushButton::clicked, this, [this] { model_.runOnboardingAgain(); });
    content()->addWidget(again, 0, Qt::AlignLeft);
    follow(this, model, [this] { refresh(); });
}

QWidget* GeneralPane::statusCard() {
    auto* card = new design::Card;
    auto* row = new QHBoxLayout;
    row->setSpacing(12);
    dot_ = new design::Dot;
    row->addWidget(dot_);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget((new Text(text(Key::generalStatus), TextStyle::caption, Tone::secondary))->wrapped());
    status_ = (new Text({}, TextStyle::headline))->wrapped();
    texts->addWidget(status_);
    row->addLayout(texts, 1);
    openPrivacy_ = new Button(text(Key::actionOpenPrivacy), Button::Kind::secondary);
    connect(openPrivacy_, &QPushButton::clicked, this,
            [this] { model_.perform(MenuAction::openPrivacySettings); });
    row->addWidget(openPrivacy_);
    card->column()->addLayout(row);
    card->column()->addWidget(new design::Divider(Qt::Horizontal));
    main_ = new design::Switch(text(Key::menuEngineToggle));
    connect(main_, &QCheckBox::clicked, this, [this](bool on) {
        model_.setEngineEnabled(on);
        refresh();
    });
    card->column()->addWidget(switchRow(main_));
    return card;
}

// Whether a switch could be thrown is known only afterwards: it always goes where the model says.
QWidget* GeneralPane::settingsCard() {
    auto* card = new design::Card;
    showLabel_ = new design::Switch(text(Key::generalShowLabel));
    connect(showLabel_, &QCheckBox::clicked, this, [this](bool on) {
        model_.setShowSourceLabel(on);
        refresh();
    });
    card->column()->addWidget(switchRow(showLabel_));
    if (model_.indicatesSwitches()) {
        card->column()->addWidget(new design::Divider(Qt::Horizontal));
        indicate_ = new design::Switch(text(Key::generalIndicate));
        connect(indicate_, &QCheckBox::clicked, this, [this](bool on) {
            model_.setIndicatesSwitches(on);
            refresh();
        });
        card->column()->addWidget(switchRow(indicate_));
    }
    if (model_.canGuardTaps()) {
        card->column()->addWidget(new design::Divider(Qt::Horizontal));
        guardTaps_ = new design::Switch(text(Key::generalGuardTaps));
        connect(guardTaps_, &QCheckBox::clicked, this, [this](bool on) {
            model_.setGuardsTaps(on);
            refresh();
        });
        card->column()->addWidget(switchRow(guardTaps_));
    }
    card->column()->addWidget(new design::Divider(Qt::Horizontal));
    launchAtLogin_ = new design::Switch(text(Key::generalLaunchAtLogin));
    connect(launchAtLogin_, &QCheckBox::clicked, this, [this](bool on) {
        model_.setLaunchAtLogin(on);
        refresh();
    });
    launchRow_ = switchRow(launchAtLogin_);
    card->column()->addWidget(launchRow_);
    approval_ = approvalLine();
    card->column()->addWidget(approval_);
    return card;
}

QWidget* GeneralPane::approvalLine() {
    auto* line = new QWidget;
    auto* row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(12);
    row->addWidget(
        (new Text(text(Key::generalLaunchNeedsApproval), TextStyle::callout, Tone::warning))->wrapped(), 1);
    auto* open = new Button(text(Key::generalOpenLoginItems), Button::Kind::secondary);
    connect(open, &QPushButton::clicked, this, [this] { model_.openLoginItemsSettings(); });
    row->addWidget(open);
    return line;
}

void GeneralPane::refresh() {
    const StatusLine status = model_.statusLine();
    dot_->setTone(toneOf(status));
    status_->setText(QString::fromStdString(menu_builder::statusTitle(status, model_.takenCombinations())));
    main_->setChecked(model_.engineEnabled());
    openPrivacy_->setVisible(status == StatusLine::permissionMissing || status == StatusLine::tapsUnheard);
    showLabel_->setChecked(model_.showSourceLabel());
    if (indicate_ != nullptr) indicate_->setChecked(model_.indicatesSwitches().value_or(false));
    if (guardTaps_ != nullptr) guardTaps_->setChecked(model_.guardsTaps());
    const LoginItemStatus login = model_.launchStatus();
    launchAtLogin_->setChecked(login == LoginItemStatus::enabled);
    launchRow_->setEnabled(login != LoginItemStatus::unavailable);
    approval_->setVisible(login == LoginItemStatus::requiresApproval);
}

} // namespace hopsel
