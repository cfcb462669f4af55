// The first two pages: which key, and which two input sources.
#include "model/texts/issue_texts.h"
#include "ui/design/boxes.h"
#include "ui/design/source_picker.h"
#include "ui/onboarding/onboarding_page.h"
#include "ui/onboarding/onboarding_widgets.h"

#include <QHBoxLayout>
#include <map>

namespace hopsel {

namespace {

using design::SourcePicker;
using design::Text;
using design::TextStyle;
using design::Tone;

class KeyPage final : public OnboardingPage {
  public:
    explicit KeyPage(OnboardingModel& model)
        : OnboardingPage(l10n::Key::onbKeyTitle, words(l10n::Key::onbKeySubtitle)), model_(model) {
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
        column()->addWidget(
            (new Text(words(l10n::Key::onbKeyNote), TextStyle::caption, Tone::secondary))->wrapped());
        column()->addStretch(1);
    }

    void refresh() override {
        for (const auto& [key, choice] : choices_) {
            if (model_.trigger() == key) choice->setChecked(true);
        }
    }
    QWidget* firstControl() const override {
        for (const auto& [key, choice] : choices_) {
            if (choice->isChecked()) return choice;
        }
        return choices_.at(ModifierKey::rightCommand);
    }

  private:
    OnboardingModel& model_;
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
          messages_(new QVBoxLayout) {
        pickerA_->onPicked = [this](const std::string& id) { model_.setSourceAID(id); };
        pickerB_->onPicked = [this](const std::string& id) { model_.setSourceBID(id); };
        messages_->setSpacing(6);
        asking_->hide();
        column()->addWidget(asking_);
        column()->addLayout(messages_);
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
        std::vector<QString> messages = problems();
        if (messages != shownMessages_) {
            design::clear(messages_);
            for (const QString& message : messages)
                messages_->addWidget(design::messageLine("exclamationmark.circle", message, Tone::warning));
            shownMessages_ = std::move(messages);
        }
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

    /// Everything that keeps the rule from being made.
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
        return texts;
    }

    OnboardingModel& model_;
    AppModel& app_;
    SourcePicker* pickerA_;
    SourcePicker* pickerB_;
    Text* asking_;
    QVBoxLayout* messages_;
    std::optional<Pickers> shownPickers_;
    std::vector<QString> shownMessages_;
};

} // namespace

OnboardingPage* makeKeyPage(OnboardingModel& model) { return new KeyPage(model); }

OnboardingPage* makeSourcesPage(OnboardingModel& model, AppModel& app) { return new SourcesPage(model, app); }

} // namespace hopsel
