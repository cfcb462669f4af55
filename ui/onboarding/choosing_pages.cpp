// The first two pages: which key, and which two input sources.
#include "model/texts/issue_texts.h"
#include "model/texts/platform_notes.h"
#include "ui/design/boxes.h"
#include "ui/design/buttons.h"
#include "ui/design/source_picker.h"
#include "ui/onboarding/onboarding_page.h"
#include "ui/onboarding/onboarding_widgets.h"

#include <QHBoxLayout>
#include <map>

namespace hopsel {

namespace {

using design::Button;
using design::SourcePicker;
using design::Text;
using design::TextStyle;
using design::Tone;

class KeyPage final : public OnboardingPage {
  public:
    explicit KeyPage(OnboardingModel& model)
        : OnboardingPage(l10n::Key::onbKeyTitle, words(l10n::Key::onbKeySubtitle)),
          model_(model),
          press_(new Button({}, Button::Kind::secondary)) {
        auto* row = new QHBoxLayout;
        row->setSpacing(12);
        for (const ModifierKey key :
             {ModifierKey::rightCommand, ModifierKey::rightOption, ModifierKey::rightControl}) {
            auto* choice = new KeyChoice(QString::fromStdString(l10n::keyName(key)));
            connect(choice, &KeyChoice::toggled, this, [this, key](bool isChosen) {
                if (isChosen) model_.setTrigger(key);
            });
            choices_[key] = choice;
            row->addWidget(choice, 1);
        }
        column()->addLayout(row);
        press_->setAutoDefault(true);
        connect(press_, &Button::clicked, this, [this] { model_.captureTrigger(); });
        column()->addWidget(press_, 0, Qt::AlignLeft);
        column()->addWidget(
            (new Text(words(l10n::Key::onbKeyNote), TextStyle::caption, Tone::secondary))->wrapped());
        column()->addStretch(1);
    }

    void refresh() override {
        for (const auto& [key, choice] : choices_) {
            if (model_.trigger() == key) choice->setChecked(true);
        }
        const bool isOwn = model_.trigger() && !choices_.contains(*model_.trigger());
        if (isOwn) uncheckAll();
        press_->setText(model_.isCapturing() ? words(l10n::Key::onbPressNow)
                        : isOwn ? words(l10n::Key::onbPressedKey, {l10n::keyName(*model_.trigger())})
                                : words(l10n::Key::onbPressKey));
        press_->setEnabled(model_.permissionGranted());
    }
    QWidget* firstControl() const override {
        for (const auto& [key, choice] : choices_) {
            if (choice->isChecked()) return choice;
        }
        return press_->isEnabled() ? static_cast<QWidget*>(press_) : choices_.at(ModifierKey::rightCommand);
    }

  private:
    /// Which those that exclude each other do not let happen by themselves.
    void uncheckAll() {
        for (const auto& [key, choice] : choices_) choice->setAutoExclusive(false);
        for (const auto& [key, choice] : choices_) choice->setChecked(false);
        for (const auto& [key, choice] : choices_) choice->setAutoExclusive(true);
    }

    OnboardingModel& model_;
    Button* press_;
    std::map<ModifierKey, KeyChoice*> choices_;
};

class SourcesPage final : public OnboardingPage {
  public:
    SourcesPage(OnboardingModel& model, AppModel& app)
        : OnboardingPage(l10n::Key::onbSourcesTitle, words(l10n::Key::onbSourcesSubtitle)),
          model_(model),
          app_(app),
          pickerA_(addPicker(l10n::Key::addRuleSourceA)),
          pickerB_(addPicker(l10n::Key::addRuleSourceB)),
          asking_(new Text(words(l10n::Key::onbAskingSources), TextStyle::callout, Tone::secondary)),
          few_(new Text(words(l10n::Key::onbFewSources), TextStyle::callout, Tone::warning)),
          open_(new Button(words(l10n::Key::onbOpenSources), Button::Kind::secondary)),
          messages_(new QVBoxLayout),
          start_(new Button({}, Button::Kind::secondary)) {
        pickerA_->onPicked = [this](const std::string& id) { model_.setSourceAID(id); };
        pickerB_->onPicked = [this](const std::string& id) { model_.setSourceBID(id); };
        messages_->setSpacing(6);
        for (QWidget* widget :
             {static_cast<QWidget*>(asking_), static_cast<QWidget*>(few_), static_cast<QWidget*>(open_)})
            widget->hide();
        open_->setAutoDefault(true);
        connect(open_, &Button::clicked, this, [this] { app_.openInputSourceSettings(); });
        column()->addWidget(asking_);
        column()->addWidget(few_->wrapped());
        column()->addWidget(open_, 0, Qt::AlignLeft);
        column()->addLayout(messages_);
        start_->setAutoDefault(true);
        connect(start_, &Button::clicked, this, [this] {
            if (const auto offer = model_.startOffer()) app_.take(*offer);
        });
        column()->addWidget(start_, 0, Qt::AlignLeft);
        column()->addStretch(1);
    }

    // An open list and the keyboard stay where they are unless there is something else to show.
    void refresh() override {
        Pickers pickers{app_.selectableSources(), model_.sourceAID(), model_.sourceBID()};
        if (pickers != shownPickers_) {
            pickerA_->show(pickers.offered, pickers.a);
            pickerB_->show(pickers.offered, pickers.b);
            shownPickers_ = std::move(pickers);
        }
        asking_->setVisible(app_.isAskingForSources());
        few_->setVisible(model_.lacksSources());
        open_->setVisible(model_.lacksSources());
        std::vector<QString> messages = problems();
        if (messages != shownMessages_) {
            design::clear(messages_);
            for (const QString& message : messages)
                messages_->addWidget(design::messageLine("exclamationmark.circle", message, Tone::warning));
            shownMessages_ = std::move(messages);
        }
        const auto offer = model_.startOffer();
        start_->setVisible(offer.has_value());
        if (offer)
            start_->setText(QString::fromStdString(l10n::startOfferText(offer->sourceName, offer->isDone)));
    }
    QWidget* firstControl() const override { return pickerA_; }

  private:
    struct Pickers {
        std::vector<InputSourceInfo> offered;
        std::optional<std::string> a;
        std::optional<std::string> b;
        friend bool operator==(const Pickers&, const Pickers&) = default;
    };

    SourcePicker* addPicker(l10n::Key title) {
        auto* side = new QVBoxLayout;
        side->setSpacing(4);
        auto* label = new Text(words(title), TextStyle::callout, Tone::secondary);
        auto* picker = new SourcePicker(words(title));
        label->setBuddy(picker);
        side->addWidget(label);
        side->addWidget(picker);
        column()->addLayout(side);
        return picker;
    }

    /// Everything that keeps the rule from being made, and what should be known of the pair.
    std::vector<QString> problems() const {
        std::vector<QString> texts;
        for (const RuleIssue& issue : model_.issues())
            texts.push_back(QString::fromStdString(l10n::issueText(issue)));
        if (const auto& problem = app_.storeProblem()) {
            const bool isNewer = std::holds_alternative<store_problem::NewerVersion>(*problem);
            texts.push_back(words(isNewer ? l10n::Key::storeNewerVersion : l10n::Key::storeCorrupt));
        } else if (model_.failure()) {
            texts.push_back(QString::fromStdString(*model_.failure()));
        }
        if (const auto note = model_.limitNote()) texts.push_back(QString::fromStdString(*note));
        return texts;
    }

    OnboardingModel& model_;
    AppModel& app_;
    SourcePicker* pickerA_;
    SourcePicker* pickerB_;
    Text* asking_;
    Text* few_;
    Button* open_;
    QVBoxLayout* messages_;
    Button* start_; ///< what can be done about Latin letters first, and back
    std::optional<Pickers> shownPickers_;
    std::vector<QString> shownMessages_;
};

} // namespace

OnboardingPage* makeKeyPage(OnboardingModel& model) { return new KeyPage(model); }

OnboardingPage* makeSourcesPage(OnboardingModel& model, AppModel& app) { return new SourcesPage(model, app); }

} // namespace hopsel
