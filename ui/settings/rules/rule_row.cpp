#include "ui/settings/rules/rule_row.h"

#include "model/texts/combination_texts.h"
#include "model/texts/l10n.h"
#include "model/texts/platform_notes.h"
#include "ui/design/buttons.h"
#include "ui/design/source_picker.h"
#include "ui/design/symbols.h"
#include "ui/design/text.h"
#include "ui/design/texts.h"

#include <QHBoxLayout>
#include <QPainter>
#include <algorithm>

namespace hopsel {

using design::Button;
using design::SourcePicker;
using design::Switch;
using design::Text;
using design::TextStyle;
using design::Tone;
using l10n::Key;
using rule_row_layout::Cell;

namespace {

constexpr int spacing = 10;
/// So that the sources of most rules begin at the same place.
constexpr int usualTrigger = 104;
/// From here on a name of an input source can be told.
constexpr int comfortableSource = 110;
constexpr std::chrono::milliseconds litFor(700);

/// `note` is a line as made below: symbol, then words.
void explain(QWidget& note, const QString& help) {
    QWidget* words = note.layout()->itemAt(1)->widget();
    note.setToolTip(help);
    words->setToolTip(help);
    words->setAccessibleDescription(help);
}

/// A symbol and a few words, on one line. Hidden until it applies.
QWidget* note(const QString& symbol, const QString& said, QWidget* parent, const QString& help = {}) {
    auto* line = new QWidget(parent);
    auto* row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(6);
    auto* words = (new Text(said, TextStyle::callout, Tone::warning))->elided();
    row->addWidget(new design::Symbol(symbol, 14, Tone::warning));
    row->addWidget(words, 1);
    if (!help.isEmpty()) explain(*line, help);
    line->hide();
    return line;
}

const action::Toggle& toggle(const Rule& rule) { return std::get<action::Toggle>(rule.action); }

Cell fixed(const QWidget& widget) {
    const QSize size = widget.sizeHint();
    return {size.width(), size.width(), size.width(), size.height()};
}

Cell triggerCell(const Button& key, int column) {
    const QSize size = key.sizeHint();
    const int wanted = std::max(column, design::scaled(usualTrigger));
    return {key.minimumSizeHint().width(), wanted, wanted, size.height()};
}

Cell sourceCell(const SourcePicker& picker) {
    const QSize size = picker.sizeHint();
    const int wanted = design::scaled(comfortableSource);
    return {picker.minimumSizeHint().width(), wanted, std::max(wanted, size.width()), size.height()};
}

Cell noteCell(const QWidget& widget) {
    const QSize size = widget.sizeHint();
    return {widget.minimumSizeHint().width(), size.width(), size.width(), size.height()};
}

} // namespace

RuleRow::RuleRow(AppModel& model, Rule rule, QWidget* parent)
    : QWidget(parent), model_(model), rule_(std::move(rule)), lightTone_(Tone::positive) {
    const QString name = QString::fromStdString(l10n::triggerName(rule_.trigger));
    const auto named = [&](Key key) { return text(key) + ", " + name; };
    toggle_ = new Switch(name, this);
    const QString change = QString::fromStdString(l10n::changeKeyText());
    trigger_ = new Button(name, Button::Kind::keyCap, this);
    trigger_->setToolTip(name + " – " + change);
    trigger_->setAccessibleName(name + ", " + change);
    pickerA_ = new SourcePicker(named(Key::addRuleSourceA), this);
    pickerB_ = new SourcePicker(named(Key::addRuleSourceB), this);
    broken_ = note("exclamationmark.triangle.fill", text(Key::ruleBroken), this);
    needsAccessibility_ = note("exclamationmark.triangle", text(Key::ruleNeedsAccessibility), this,
                               text(Key::statusAccessibility));
    tapUnheard_ =
        note("exclamationmark.triangle", text(Key::ruleTapUnheard), this, text(Key::ruleTapUnheardWhy));
    systemConflict_ = note("exclamationmark.triangle", text(Key::ruleSystemConflict), this,
                           text(Key::issueSystemShortcutConflict));
    limit_ = note("exclamationmark.triangle",
                  QString::fromStdString(l10n::note(PlatformNote::typesLatinFirst)), this);
    start_ = new Button({}, Button::Kind::secondary, this);
    delete_ = new Button(text(Key::ruleDelete), Button::Kind::borderless, this);
    delete_->setAccessibleName(named(Key::ruleDelete));

    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    bind();
    refresh(rule_);
}

void RuleRow::bind() {
    connect(toggle_, &QCheckBox::clicked, this, [this](bool on) { enable(on); });
    connect(trigger_, &QPushButton::clicked, this, [this] {
        if (onChangeKey) onChangeKey();
    });
    connect(delete_, &QPushButton::clicked, this, [this] { model_.removeRule(rule_.id); });
    connect(start_, &QPushButton::clicked, this, [this] {
        if (const auto offer = startOffer()) model_.take(*offer);
    });
    light_.setSingleShot(true);
    connect(&light_, &QTimer::timeout, this, [this] { update(); });
    pickerA_->onPicked = [this](const std::string& id) { pick(id, true); };
    pickerB_->onPicked = [this](const std::string& id) { pick(id, false); };
}

int RuleRow::triggerWidth() const { return trigger_->sizeHint().width(); }

void RuleRow::setTriggerColumn(int width) {
    if (triggerColumn_ == width) return;
    triggerColumn_ = width;
    updateGeometry();
    arrange();
}

QWidget* RuleRow::deleteButton() const { return delete_; }
QWidget* RuleRow::keyButton() const { return trigger_; }

void RuleRow::lightUp(bool worked) {
    lightTone_ = worked ? Tone::positive : Tone::warning;
    light_.start(litFor);
    update();
}

void RuleRow::refresh(const Rule& rule) {
    rule_ = rule;
    toggle_->setChecked(rule_.enabled);
    trigger_->setEnabled(model_.canEditRules());
    showSource(*pickerA_, toggle(rule_).sourceA, shownA_);
    showSource(*pickerB_, toggle(rule_).sourceB, shownB_);
    showNotes();
    updateGeometry();
    arrange();
}

void RuleRow::showSource(SourcePicker& picker, const InputSourceRef& current, std::optional<Shown>& shown) {
    Shown next{model_.selectableSources(), current};
    if (shown == next) return; // an open list stays open
    shown = std::move(next);
    picker.show(std::get<0>(*shown), current.sourceId, QString::fromStdString(current.displayName));
}

void RuleRow::showNotes() {
    const auto warning = model_.warning(rule_.trigger, rule_.enabled);
    broken_->setVisible(std::holds_alternative<rule_health::BrokenSource>(model_.health(rule_)));
    needsAccessibility_->setVisible(warning == RuleWarning::needsAccessibility);
    tapUnheard_->setVisible(warning == RuleWarning::tapUnheard);
    systemConflict_->setVisible(warning == RuleWarning::systemShortcutConflict);
    const auto limit = model_.limitNote(toggle(rule_).sourceA.sourceId, toggle(rule_).sourceB.sourceId);
    limit_->setVisible(limit.has_value());
    explain(*limit_, QString::fromStdString(limit.value_or("")));
    const auto offer = startOffer();
    start_->setVisible(offer.has_value());
    if (offer)
        start_->setText(QString::fromStdString(l10n::startOfferText(offer->sourceName, offer->isDone)));
}

std::optional<StartOffer> RuleRow::startOffer() const {
    return model_.startOffer(toggle(rule_).sourceA.sourceId, toggle(rule_).sourceB.sourceId);
}

std::array<QWidget*, 6> RuleRow::notes() const {
    return {broken_, needsAccessibility_, tapUnheard_, systemConflict_, limit_, start_};
}

void RuleRow::enable(bool on) {
    if (!model_.setRuleEnabled(rule_.id, on)) refresh(rule_);
}

void RuleRow::pick(const std::string& id, bool isFirst) {
    const std::vector<InputSourceInfo> offered = model_.selectableSources();
    const auto find = [&](const std::string& wanted) {
        return std::find_if(offered.begin(), offered.end(),
                            [&](const InputSourceInfo& source) { return source.id == wanted; });
    };
    const auto picked = find(id);
    if (picked == offered.end()) return;
    const InputSourceRef& otherRef = isFirst ? toggle(rule_).sourceB : toggle(rule_).sourceA;
    const auto listed = find(otherRef.sourceId);
    const InputSourceInfo other =
        listed != offered.end() ? *listed
                                : InputSourceInfo{otherRef.sourceId, otherRef.displayName, {}, {}, false};
    const EditResult result = isFirst ? model_.updateSources(rule_.id, *picked, other)
                                      : model_.updateSources(rule_.id, other, *picked);
    if (std::holds_alternative<edit_result::Added>(result)) return;
    // Back to what is stored.
    (isFirst ? shownA_ : shownB_).reset();
    refresh(rule_);
}

rule_row_layout::Places RuleRow::places(int width) const {
    rule_row_layout::Parts parts;
    parts.toggle = fixed(*toggle_);
    parts.trigger = triggerCell(*trigger_, std::max(triggerColumn_, triggerWidth()));
    parts.sourceA = sourceCell(*pickerA_);
    parts.sourceB = sourceCell(*pickerB_);
    for (const QWidget* widget : notes())
        if (!widget->isHidden()) parts.notes.push_back(noteCell(*widget));
    parts.remove = fixed(*delete_);
    return rule_row_layout::arrange(parts, width, spacing);
}

void RuleRow::arrange() {
    const rule_row_layout::Places to = places(width());
    toggle_->setGeometry(to.toggle);
    // The key is as wide as its name, at the beginning of the room that is kept for it.
    QRect key = to.trigger;
    key.setWidth(std::min(key.width(), trigger_->sizeHint().width()));
    trigger_->setGeometry(key);
    pickerA_->setGeometry(to.sourceA);
    pickerB_->setGeometry(to.sourceB);
    std::size_t next = 0;
    for (QWidget* widget : notes())
        if (!widget->isHidden()) widget->setGeometry(to.notes[next++]);
    delete_->setGeometry(to.remove);
}

int RuleRow::heightForWidth(int width) const { return places(width).height; }

QSize RuleRow::sizeHint() const {
    const int width = design::scaled(420);
    return {width, heightForWidth(width)};
}

QSize RuleRow::minimumSizeHint() const {
    const int source = pickerA_->minimumSizeHint().width();
    const int width = toggle_->sizeHint().width() + spacing + std::max(source, delete_->sizeHint().width());
    return {width, pickerA_->sizeHint().height()};
}

void RuleRow::paintEvent(QPaintEvent* /*event*/) {
    if (!light_.isActive()) return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    QColor light = design::color(lightTone_, palette());
    light.setAlphaF(0.25F);
    painter.setBrush(light);
    painter.drawRoundedRect(rect(), 8, 8);
}

void RuleRow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    arrange();
}

} // namespace hopsel
