#include "ui/menubar/menu_builder.h"
#include "ui/settings/design/reading_text.h"
#include "ui/settings/design/symbols.h"
#include "ui/settings/settings_rig.h"

using namespace hopsel;
using namespace hopsel::test;
using design::Tone;
using l10n::Key;

namespace {

class SimplePanes : public testing::Test, public SettingsRig {
  public:
    void setEngine(const EngineState& state) {
        engine->current = state;
        emitEvent(engine_event::StateChanged{state});
        settle();
    }
};

} // namespace

TEST_F(SimplePanes, GeneralFollowsTheStateOfTheProgram) {
    open(SettingsPane::general);
    struct Case {
        EngineState state;
        StatusLine line;
        Tone dot;
    };
    const Case cases[]{
        {engine_state::Running{}, StatusLine::ok, Tone::positive},
        {engine_state::Stopped{}, StatusLine::starting, Tone::secondary},
        {engine_state::Degraded{DegradedReason::tapDisabled}, StatusLine::tapDisabled, Tone::warning},
        {engine_state::Degraded{DegradedReason::permissionMissing}, StatusLine::permissionMissing,
         Tone::warning},
    };
    for (const Case& one : cases) {
        setEngine(one.state);
        EXPECT_EQ(visible<design::Dot>().front()->tone(), one.dot);
        EXPECT_TRUE(label(QString::fromStdString(menu_builder::statusTitle(one.line))));
        EXPECT_EQ(button(Key::actionOpenPrivacy) != nullptr, one.line == StatusLine::permissionMissing);
    }
    calls.clear();
    click(button(Key::actionOpenPrivacy));
    EXPECT_EQ(calls, fakes::Calls{"open input monitoring"});
}

TEST_F(SimplePanes, GeneralSwitchesShowWhatCameOfIt) {
    int onboardings = 0;
    launch().onRequestOnboarding = [&] { ++onboardings; };
    open(SettingsPane::general);
    click(button(Key::generalShowLabel));
    EXPECT_FALSE(preferences->showLabel);

    QAbstractButton* login = button(Key::generalLaunchAtLogin);
    login->setFocus();
    QTest::keyClick(login, Qt::Key_Space);
    settle();
    EXPECT_EQ(loginItem->current, LoginItemStatus::enabled);
    EXPECT_TRUE(login->isChecked());
    loginItem->refuses = true;
    click(login);
    EXPECT_TRUE(login->isChecked());

    click(button(Key::generalRunOnboarding));
    EXPECT_EQ(onboardings, 1);
}

TEST_F(SimplePanes, GeneralAsksForApprovalOnlyWhenItIsNeeded) {
    loginItem->current = LoginItemStatus::requiresApproval;
    open(SettingsPane::general);
    EXPECT_FALSE(button(Key::generalLaunchAtLogin)->isChecked());
    EXPECT_TRUE(says(Key::generalLaunchNeedsApproval));
    click(button(Key::generalOpenLoginItems));
    EXPECT_EQ(calls, fakes::Calls{"open login items"});

    loginItem->current = LoginItemStatus::unavailable;
    loginItem->refuses = true;
    click(button(Key::generalLaunchAtLogin));
    EXPECT_FALSE(button(Key::generalLaunchAtLogin)->isEnabled());
    EXPECT_FALSE(says(Key::generalLaunchNeedsApproval));
}

TEST_F(SimplePanes, SourcesAreListedInOrderWithTheirTags) {
    open(SettingsPane::sources);
    const int korean = label("Korean")->mapTo(controller->window(), QPoint()).y();
    const int emoji = label("Emoji")->mapTo(controller->window(), QPoint()).y();
    const int abc = label("ABC")->mapTo(controller->window(), QPoint()).y();
    EXPECT_TRUE(korean < abc && abc < emoji);
    EXPECT_NEAR(label(text(Key::sourceCurrent))->mapTo(controller->window(), QPoint()).y(), abc, 20);
    EXPECT_NEAR(label(text(Key::sourceNotSelectable))->mapTo(controller->window(), QPoint()).y(), emoji, 20);

    directory->sources.clear();
    model->sourcesChanged();
    settle();
    EXPECT_TRUE(says(Key::sourcesEmpty));
    EXPECT_FALSE(label("Korean"));
}

TEST_F(SimplePanes, ASwitchDoesNotTakeAwayASelectedIdentifier) {
    open(SettingsPane::sources);
    auto* identifier = visible<design::ReadingText>().front();
    identifier->setFocus();
    identifier->selectAll();
    directory->current = "hangul";
    model->currentSourceChanged();
    settle();
    ASSERT_EQ(visible<design::ReadingText>().front(), identifier);
    EXPECT_EQ(identifier->textCursor().selectedText(), "hangul");
    EXPECT_NEAR(label(text(Key::sourceCurrent))->mapTo(controller->window(), QPoint()).y(),
                label("Korean")->mapTo(controller->window(), QPoint()).y(), 20);
}
