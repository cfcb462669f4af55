// The last two pages: the permission, and the first press of the key.
#include "ui/design/boxes.h"
#include "ui/design/buttons.h"
#include "ui/design/symbols.h"
#include "ui/onboarding/onboarding_page.h"
#include "ui/onboarding/onboarding_widgets.h"

#include <QHBoxLayout>

namespace hopsel {

namespace {

using design::Button;
using design::Text;
using design::TextStyle;
using design::Tone;

class PermissionPage final : public OnboardingPage {
  public:
    explicit PermissionPage(OnboardingModel& model)
        : OnboardingPage(l10n::Key::onbPermissionTitle, words(l10n::Key::onbPermissionBody)),
          model_(model),
          request_(new Button(words(l10n::Key::onbPermissionRequest), Button::Kind::secondary)),
          waiting_(new Text(words(l10n::Key::onbPermissionWaiting), TextStyle::body, Tone::secondary)),
          granted_(new Text(words(l10n::Key::onbPermissionGranted), TextStyle::headline, Tone::positive)) {
        auto* card = new design::Card(16);
        auto* row = new QHBoxLayout;
        row->setSpacing(12);
        row->addWidget(new design::Symbol("lock.shield", 28, Tone::accent));
        row->addWidget(waiting_->wrapped(), 1);
        row->addWidget(granted_->wrapped(), 1);
        row->addWidget(request_);
        card->column()->addLayout(row);
        column()->addWidget(card);
        column()->addStretch(1);
        request_->setAutoDefault(true);
        connect(request_, &Button::clicked, this, [this] { model_.requestPermission(); });
    }

    void refresh() override {
        const bool isGranted = model_.permissionGranted();
        request_->setVisible(!isGranted);
        waiting_->setVisible(!isGranted);
        granted_->setVisible(isGranted);
    }
    QWidget* firstControl() const override { return model_.permissionGranted() ? nullptr : request_; }

  private:
    OnboardingModel& model_;
    Button* request_;
    Text* waiting_;
    Text* granted_;
};

class TestPage final : public OnboardingPage {
  public:
    TestPage(OnboardingModel& model, AppModel& app)
        : OnboardingPage(l10n::Key::onbTestTitle, {}, Tone::primary),
          model_(model),
          app_(app),
          tile_(new SourceTile),
          success_(new Text(words(l10n::Key::onbTestSuccess), TextStyle::title3, Tone::positive)) {
        column()->addWidget(tile_, 1);
        // Its place is kept, so that nothing moves at the moment of success.
        QSizePolicy policy = success_->wrapped()->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        success_->setSizePolicy(policy);
        success_->setAlignment(Qt::AlignCenter);
        column()->addWidget(success_);
    }

    void refresh() override {
        if (model_.trigger())
            setSubtitle(words(l10n::Key::onbTestPrompt, {l10n::keyName(*model_.trigger())}));
        tile_->setSource(QString::fromStdString(app_.currentSourceLabel().value_or("–")),
                         QString::fromStdString(app_.currentSourceName().value_or("")));
        tile_->setPassed(model_.testPassed());
        success_->setVisible(model_.testPassed());
    }

  private:
    OnboardingModel& model_;
    AppModel& app_;
    SourceTile* tile_;
    Text* success_;
};

} // namespace

OnboardingPage* makePermissionPage(OnboardingModel& model) { return new PermissionPage(model); }

OnboardingPage* makeTestPage(OnboardingModel& model, AppModel& app) { return new TestPage(model, app); }

} // namespace hopsel
