#include "ui/onboarding/onboarding_view.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QVBoxLayout>
#include <algorithm>

namespace hopsel {

using design::Button;
using design::Text;
using design::TextStyle;

namespace {

constexpr int contentWidth = 560;
constexpr int contentHeight = 460;
constexpr int margin = OnboardingPage::margin;
constexpr int borderlessPadding = 6;

} // namespace

OnboardingView::OnboardingView(OnboardingModel& model, AppModel& app, std::function<void()> onFinish,
                               QWidget* parent)
    : QWidget(parent),
      model_(model),
      onFinish_(std::move(onFinish)),
      steps_(new StepBar(static_cast<int>(allOnboardingSteps.size()))),
      stepOf_(new Text({}, TextStyle::caption, design::Tone::secondary)),
      stack_(new QStackedLayout),
      pages_{makeKeyPage(model), makeSourcesPage(model, app), makePermissionPage(model),
             makeTestPage(model, app)},
      skip_(new Button(words(l10n::Key::onbSkip), Button::Kind::borderless)),
      back_(new Button(words(l10n::Key::onbBack), Button::Kind::secondary)),
      primary_(new Button(words(l10n::Key::onbNext), Button::Kind::primary)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, margin, 0, margin - 4);
    column->setSpacing(20);
    column->addLayout(header());
    for (OnboardingPage* each : pages_) stack_->addWidget(each);
    column->addLayout(stack_, 1);
    column->addLayout(footer());

    connect(skip_, &Button::clicked, this, [this] {
        model_.skip();
        onFinish_();
    });
    connect(back_, &Button::clicked, this, [this] { model_.back(); });
    connect(primary_, &Button::clicked, this, [this] { advance(); });

    setMinimumHeight(contentHeight);
    refresh();
    model_.observe(this, [this] { refresh(); });
    app.observe(this, [this] { refresh(); });
}

QLayout* OnboardingView::header() {
    auto* row = new QHBoxLayout;
    row->setContentsMargins(margin, 0, margin, 0);
    row->addWidget(steps_);
    row->addStretch(1);
    row->addWidget(stepOf_);
    return row;
}

QLayout* OnboardingView::footer() {
    auto* row = new QHBoxLayout;
    row->setContentsMargins(margin - borderlessPadding, 0, margin, 0); // the texts begin on one line
    row->setSpacing(10);
    row->addWidget(skip_);
    row->addStretch(1);
    row->addWidget(back_);
    row->addWidget(primary_);
    skip_->setAutoDefault(true);
    back_->setAutoDefault(true);
    primary_->setDefault(true);
    return row;
}

void OnboardingView::advance() {
    const bool isLast = model_.step() == OnboardingStep::test;
    if (model_.next() && isLast) onFinish_();
}

void OnboardingView::refresh() {
    QWidget* const focused = focusWidget();
    const OnboardingStep step = model_.step();
    steps_->setSteps(model_.stepCount(), model_.stepNumber());
    stepOf_->setText(words(l10n::Key::onbStepOf,
                           {std::to_string(model_.stepNumber()), std::to_string(model_.stepCount())}));
    // The hidden ones too: the window is as large as the largest needs.
    for (OnboardingPage* each : pages_) each->refresh();
    back_->setVisible(step != OnboardingStep::key);
    primary_->setText(words(step == OnboardingStep::test ? l10n::Key::onbFinish : l10n::Key::onbNext));
    primary_->setEnabled(model_.canAdvance());
    stack_->setCurrentWidget(page());
    // As wide as the widest row at the user's text size; the height follows from the lines that break there.
    setFixedWidth(std::max(contentWidth, layout()->minimumSize().width()));

    const bool hasNoControl =
        focused == nullptr || focused == page() || !focused->isEnabled() || !focused->isVisibleTo(this);
    if (shown_ != step || hasNoControl) placeFocus();
    shown_ = step;
}

void OnboardingView::placeFocus() {
    QWidget* control = page()->firstControl();
    if (control == nullptr && primary_->isEnabled()) control = primary_;
    // A page with nothing to operate has the keyboard itself: a stray Space must not press what comes next.
    if (control == nullptr) control = page();
    control->setFocus(Qt::OtherFocusReason);
}

void OnboardingView::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && !event->isAutoRepeat())
        primary_->click();
    else
        QWidget::keyPressEvent(event);
}

void OnboardingView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (!event->spontaneous()) placeFocus(); // not when the window comes back from being minimized
}

} // namespace hopsel
