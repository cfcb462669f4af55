#include "ui/settings/rules/add_rule_view.h"

#include "model/source_suggester.h"
#include "model/texts/combination_texts.h"
#include "model/texts/issue_texts.h"
#include "model/texts/l10n.h"
#include "model/texts/platform_notes.h"
#include "ui/design/boxes.h"
#include "ui/design/buttons.h"
#include "ui/design/scroll_bar.h"
#include "ui/design/source_picker.h"
#include "ui/design/text.h"
#include "ui/design/texts.h"

#include <QHBoxLayout>
#include <QHideEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <algorithm>

namespace hopsel {

using design::Button;
using design::Text;
using design::TextStyle;
using design::Tone;
using l10n::Key;

namespace {

constexpr int padding = 24;

} // namespace

AddRuleView::AddRuleView(AppModel& model, std::shared_ptr<LocalKeyMonitoring> keys,
                         std::optional<Trigger> initialTrigger, std::function<void()> onClose,
                         QWidget* parent, std::optional<Rule> changed)
    : QWidget(parent),
      model_(model),
      changed_(std::move(changed)),
      capture_(model, std::move(keys), initialTrigger),
      onClose_(std::move(onClose)),
      captureButton_(new Button({}, Button::Kind::keyCap)),
      hint_((new Text({}, TextStyle::caption, Tone::secondary))->wrapped()),
      turnOn_(new Button(text(Key::addRuleTurnOn), Button::Kind::secondary)),
      messages_(new QVBoxLayout) {
    const auto suggestion = source_suggester::suggest(model_.selectableSources());
    sourceAID_ = suggestion.a;
    sourceBID_ = suggestion.b;
    if (changed_) {
        const auto& toggle = std::get<action::Toggle>(changed_->action);
        sourceAID_ = toggle.sourceA.sourceId;
        sourceBID_ = toggle.sourceB.sourceId;
    }
    setAccessibleName(title());

    auto* scroller = new QScrollArea;
    scroller->setFrameShape(QFrame::NoFrame);
    scroller->setFocusPolicy(Qt::NoFocus);
    scroller->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroller->setWidgetResizable(true);
    design::makeSlim(scroller->verticalScrollBar());
    body_ = body();
    scroller->setWidget(body_);
    // The ground is that of whoever shows the view.
    scroller->viewport()->setAutoFillBackground(false);
    body_->setAutoFillBackground(false);
    buttons_ = buttonRow();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(scroller, 1);
    column->addWidget(buttons_);

    connect(captureButton_, &QPushButton::clicked, this, [this] {
        failure_.clear();
        capture_.start();
    });
    connect(turnOn_, &QPushButton::clicked, this, [this] {
        model_.setEngineEnabled(true);
        capture_.start();
        captureButton_->setFocus(Qt::OtherFocusReason);
    });
    capture_.onChange = [this] { refresh(); };
    bindKeys();
    model_.observe(this, [this] { refresh(); });
    refresh();
}

QString AddRuleView::title() const {
    return changed_ ? QString::fromStdString(l10n::changeKeyText()) : text(Key::addRuleTitle);
}

QWidget* AddRuleView::body() {
    auto* body = new QWidget;
    auto* column = new QVBoxLayout(body);
    column->setContentsMargins(padding, padding, padding, 4);
    column->setSpacing(16);
    column->addWidget((new Text(title(), TextStyle::title3))->wrapped());
    auto* key = new QVBoxLayout;
    key->setSpacing(6);
    key->addWidget(new Text(text(Key::addRuleKey), TextStyle::callout));
    key->addWidget(captureButton_, 0, Qt::AlignLeft);
    key->addWidget(hint_);
    key->addWidget(turnOn_, 0, Qt::AlignLeft);
    column->addLayout(key);
    column->addWidget(pickerColumn(text(Key::addRuleSourceA), pickerA_, sourceAID_));
    column->addWidget(pickerColumn(text(Key::addRuleSourceB), pickerB_, sourceBID_));
    messages_->setSpacing(6);
    column->addLayout(messages_);
    column->addStretch(1);
    return body;
}

QWidget* AddRuleView::pickerColumn(const QString& title, design::SourcePicker*& picker,
                                   std::optional<std::string>& chosenID) {
    auto* group = new QWidget;
    auto* column = new QVBoxLayout(group);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(4);
    picker = new design::SourcePicker(title);
    picker->onPicked = [this, &chosenID](const std::string& id) {
        failure_.clear();
        chosenID = id;
        refresh();
    };
    auto* label = new Text(title, TextStyle::callout, Tone::secondary);
    label->setBuddy(picker);
    column->addWidget(label);
    column->addWidget(picker);
    return group;
}

QWidget* AddRuleView::buttonRow() {
    auto* row = new QWidget;
    auto* buttons = new QHBoxLayout(row);
    buttons->setContentsMargins(padding, 16, padding, padding);
    buttons->setSpacing(10);
    cancelButton_ = new Button(text(Key::addRuleCancel), Button::Kind::secondary);
    addButton_ = new Button(changed_ ? QString::fromStdString(l10n::changeText()) : text(Key::addRuleAdd),
                            Button::Kind::primary);
    buttons->addStretch(1);
    buttons->addWidget(cancelButton_);
    buttons->addWidget(addButton_);
    connect(cancelButton_, &QPushButton::clicked, this, [this] { cancel(); });
    connect(addButton_, &QPushButton::clicked, this, [this] { add(); });
    return row;
}

// Shortcuts rather than key events, because on some desktops a button takes Return for itself.
void AddRuleView::bindKeys() {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto* shortcut = new QShortcut(key, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, this, [this] {
            if (cancelButton_->hasFocus())
                cancel();
            else if (!capture_.isCapturing())
                add();
        });
    }
    auto* escape = new QShortcut(Qt::Key_Escape, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
    // Where the monitor sees keys, it has taken the Escape of a capture already.
    connect(escape, &QShortcut::activated, this, [this] {
        if (capture_.isCapturing())
            capture_.cancel();
        else
            cancel();
    });
}

void AddRuleView::focusFirst() { captureButton_->setFocus(Qt::OtherFocusReason); }

int AddRuleView::heightForWidth(int width) const {
    return body_->layout()->totalHeightForWidth(width) + buttons_->sizeHint().height();
}

QSize AddRuleView::sizeHint() const {
    const int width = design::scaled(460);
    return {width, heightForWidth(width)};
}

void AddRuleView::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    // Not when the window is only minimized, which is the desktop's doing.
    if (!event->spontaneous()) capture_.cancel();
}

void AddRuleView::refresh() {
    showCapture();
    showSources(model_.selectableSources());
    showMessages();
    addButton_->setEnabled(canAdd());
    updateGeometry();
}

void AddRuleView::showCapture() {
    const auto& trigger = capture_.trigger();
    QString label = text(Key::addRuleCapture);
    if (capture_.isCapturing())
        label = text(Key::addRuleCapturing);
    else if (trigger)
        label = QString::fromStdString(l10n::triggerName(*trigger));
    captureButton_->setText(label);
    captureButton_->setToolTip(trigger ? label : QString());
    captureButton_->setAccessibleName(text(Key::addRuleKey) + ": " + label);

    Key hint = Key::addRuleKeyHint;
    if (capture_.state() == TriggerCapture::State::unavailable) hint = Key::addRuleNeedsEngine;
    turnOn_->setVisible(hint == Key::addRuleNeedsEngine && !model_.engineEnabled());
    if (capture_.state() == TriggerCapture::State::timedOut) hint = Key::addRuleCaptureTimedOut;
    QString words = text(hint);
    if (hint != Key::addRuleNeedsEngine && capture_.missesGrabbedKeys())
        words += ' ' + QString::fromStdString(l10n::note(PlatformNote::grabbedCombinations));
    if (capture_.refused()) words = QString::fromStdString(l10n::refusedText(*capture_.refused()));
    hint_->setText(words);
    hint_->setTone(hint == Key::addRuleKeyHint && !capture_.refused() ? Tone::secondary : Tone::warning);
    captureButton_->setAccessibleDescription(words);
}

void AddRuleView::showSources(const std::vector<InputSourceInfo>& offered) {
    if (shownSources_ == offered) return; // an open list stays open
    shownSources_ = offered;
    pickerA_->show(offered, sourceAID_);
    pickerB_->show(offered, sourceBID_);
}

void AddRuleView::showMessages() {
    QStringList lines;
    for (const RuleIssue& issue : issues()) lines += describe(issue);
    lines += warnings();
    if (!failure_.isEmpty()) lines += failure_;
    if (lines == shownMessages_) return;
    shownMessages_ = lines;
    design::clear(messages_);
    for (const QString& line : lines) {
        QWidget* const message = design::messageLine("exclamationmark.circle", line, Tone::warning);
        messages_->addWidget(message);
        message->show(); // at once, so that our height counts it
    }
}

/// A key that a rule has already, with that rule.
QString AddRuleView::describe(const RuleIssue& issue) const {
    QString words = QString::fromStdString(l10n::issueText(issue));
    const auto* duplicate = std::get_if<rule_issue::DuplicateTrigger>(&issue);
    if (duplicate == nullptr) return words;
    for (const Rule& rule : model_.rules())
        if (rule.id == duplicate->existingRuleId)
            words += " (" + QString::fromStdString(model_.ruleLine(rule)) + ")";
    return words;
}

std::optional<InputSourceInfo> AddRuleView::selected(const std::optional<std::string>& id) const {
    const std::vector<InputSourceInfo> offered = model_.selectableSources();
    const auto found = std::find_if(offered.begin(), offered.end(),
                                    [&](const InputSourceInfo& source) { return source.id == id; });
    if (found == offered.end()) return std::nullopt;
    return *found;
}

std::vector<RuleIssue> AddRuleView::issues() const {
    const auto a = selected(sourceAID_);
    const auto b = selected(sourceBID_);
    if (!capture_.trigger() || !a || !b) return {};
    if (changed_) return model_.previewIssues(*capture_.trigger(), *a, *b, changed_->id);
    return model_.previewIssues(*capture_.trigger(), *a, *b);
}

QStringList AddRuleView::warnings() const {
    const auto& trigger = capture_.trigger();
    if (!trigger || !swallowedShortcut(*trigger)) return {};
    QStringList texts;
    if (!model_.accessibilityGranted()) texts += text(Key::addRuleAccessibilityNote);
    // While shortcuts are unavailable the model's warning is another one.
    if (model_.warning(*trigger, true) == RuleWarning::systemShortcutConflict)
        texts += text(Key::issueSystemShortcutConflict);
    if (const std::string missed = l10n::missedByPrograms(*swallowedShortcut(*trigger)); !missed.empty())
        texts += QString::fromStdString(missed);
    return texts;
}

bool AddRuleView::canAdd() const {
    return capture_.trigger() && selected(sourceAID_) && selected(sourceBID_) && issues().empty();
}

EditResult AddRuleView::store() {
    const InputSourceInfo a = *selected(sourceAID_);
    const InputSourceInfo b = *selected(sourceBID_);
    return changed_ ? model_.updateRule(changed_->id, *capture_.trigger(), a, b)
                    : model_.addRule(*capture_.trigger(), a, b);
}

void AddRuleView::add() {
    if (!canAdd()) return;
    const EditResult result = store();
    if (std::holds_alternative<edit_result::Added>(result)) {
        capture_.cancel();
        onClose_();
        return;
    }
    failure_ = QString::fromStdString(model_.failureText(result));
    refresh();
}

void AddRuleView::cancel() {
    capture_.cancel();
    onClose_();
}

} // namespace hopsel
