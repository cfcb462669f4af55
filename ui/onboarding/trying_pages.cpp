// The last two pages: the permission, and the first press of the key.
#include "ui/design/boxes.h"
#include "ui/design/buttons.h"
#include "ui/design/symbols.h"
#include "ui/design/text_field.h"
#include "ui/onboarding/onboarding_page.h"
#include "ui/onboarding/onboarding_widgets.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLineEdit>
#include <QStackedLayout>
#include <set>

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

/// Keys that type nothing and move nothing, by name; empty for all others.
QString nameOfIdleKey(const QKeyEvent& event) {
    static const std::set<int> idle{
        Qt::Key_CapsLock, Qt::Key_NumLock,  Qt::Key_ScrollLock,       Qt::Key_Pause,
        Qt::Key_Print,    Qt::Key_Menu,     Qt::Key_Hangul,           Qt::Key_Hangul_Hanja,
        Qt::Key_Henkan,   Qt::Key_Muhenkan, Qt::Key_Hiragana_Katakana};
    const bool isFunction = event.key() >= Qt::Key_F1 && event.key() <= Qt::Key_F35;
    if (event.isAutoRepeat() || (!isFunction && !idle.contains(event.key()))) return {};
    return QKeySequence(event.key()).toString(QKeySequence::NativeText);
}

class TestPage final : public OnboardingPage {
  public:
    TestPage(OnboardingModel& model, AppModel& app)
        : OnboardingPage(l10n::Key::onbTestTitle, {}, Tone::primary),
          model_(model),
          app_(app),
          tile_(new SourceTile),
          field_(design::textField(words(l10n::Key::onbTestField))),
          success_(new Text(words(l10n::Key::onbTestSuccess), TextStyle::title3, Tone::positive)),
          remark_(new Text({}, TextStyle::callout, Tone::warning)),
          atLogin_(new design::Switch(words(l10n::Key::generalLaunchAtLogin))),
          where_(new Text({}, TextStyle::caption, Tone::secondary)) {
        column()->addWidget(tile_, 1);
        field_->installEventFilter(this);
        column()->addWidget(field_);
        // One place for both, as high as the longer one needs, so that nothing moves as they change.
        auto* said = new QStackedLayout;
        success_->setAlignment(Qt::AlignCenter);
        remark_->setAlignment(Qt::AlignCenter);
        remark_->setMinimumHeight(2 * remark_->fontMetrics().lineSpacing());
        said->addWidget(remark_->wrapped());
        said->addWidget(success_);
        column()->addLayout(said);
        said_ = said;
        column()->addWidget(loginRow());
        column()->addWidget(where_->wrapped());
    }

    void refresh() override {
        if (model_.trigger())
            setSubtitle(words(l10n::Key::onbTestPrompt, {l10n::keyName(*model_.trigger())}));
        tile_->setSource(QString::fromStdString(app_.currentSourceLabel().value_or("–")),
                         QString::fromStdString(app_.currentSourceName().value_or("")));
        const bool hasSwitched = model_.testPassed();
        const auto note = model_.limitNote();
        const bool isPassed = hasSwitched && !note;
        tile_->setPassed(isPassed);
        const std::string trial = model_.remark();
        const QString remark =
            QString::fromStdString(trial.empty() && hasSwitched ? note.value_or("") : trial);
        remark_->setText(remark);
        said_->setCurrentWidget(isPassed && remark.isEmpty() ? static_cast<QWidget*>(success_) : remark_);
        const LoginItemStatus login = app_.launchStatus();
        atLogin_->parentWidget()->setVisible(login != LoginItemStatus::unavailable);
        atLogin_->setChecked(login == LoginItemStatus::enabled || login == LoginItemStatus::requiresApproval);
        where_->setText(words(app_.hasPanel().value_or(true) ? l10n::Key::onbWhereInPanel
                                                             : l10n::Key::onbWhereStartAgain));
    }
    QWidget* firstControl() const override { return field_; }

  protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() != QEvent::KeyPress) return false;
        const QString name = nameOfIdleKey(static_cast<const QKeyEvent&>(*event));
        if (!name.isEmpty()) model_.noteOtherKey(name.toStdString());
        return false;
    }

  private:
    QWidget* loginRow() {
        auto* line = new QWidget;
        auto* row = new QHBoxLayout(line);
        row->setContentsMargins(0, 0, 0, 0);
        row->addWidget(new Text(words(l10n::Key::generalLaunchAtLogin)), 1);
        row->addWidget(atLogin_);
        connect(atLogin_, &QCheckBox::clicked, this, [this](bool on) {
            app_.setLaunchAtLogin(on);
            refresh(); // whether it could be thrown is known only now
        });
        return line;
    }

    OnboardingModel& model_;
    AppModel& app_;
    SourceTile* tile_;
    QLineEdit* field_;
    QStackedLayout* said_ = nullptr;
    Text* success_;
    Text* remark_;
    design::Switch* atLogin_;
    Text* where_;
};

} // namespace

OnboardingPage* makePermissionPage(OnboardingModel& model) { return new PermissionPage(model); }

OnboardingPage* makeTestPage(OnboardingModel& model, AppModel& app) { return new TestPage(model, app); }

} // namespace hopsel
