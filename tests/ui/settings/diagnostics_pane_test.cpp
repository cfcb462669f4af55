#include "core/diagnostics/report_builder.h"
#include "ui/l10n/platform_notes.h"
#include "ui/settings/design/reading_text.h"
#include "ui/settings/design/symbols.h"
#include "ui/settings/settings_rig.h"

#include <QApplication>
#include <QStringList>
#include <algorithm>

using namespace hopsel;
using namespace hopsel::test;
using design::ReadingText;
using design::Tone;
using l10n::Key;

namespace {

class DiagnosticsPane : public testing::Test, public SettingsRig {
  public:
    ReadingText* reading(Key name) const {
        for (auto* candidate : visible<ReadingText>())
            if (candidate->accessibleName() == text(name)) return candidate;
        return nullptr;
    }
    const std::string probed = l10n::keyName(ModifierKey::rightCommand);

    void press(ModifierKey key) {
        now += 1;
        record(now, key_event_kind::ModifierDown{key});
        settle();
    }
};

} // namespace

TEST_F(DiagnosticsPane, CountsAllEventsAndListsTheLastThirty) {
    open(SettingsPane::diagnostics);
    EXPECT_TRUE(says(Key::diagEventsEmpty));
    QStringList lines;
    for (int i = 0; i < 45; ++i) {
        const auto key = i % 2 == 0 ? ModifierKey::leftShift : ModifierKey::rightOption;
        record(100 + i, key_event_kind::ModifierDown{key});
        lines += QString::fromStdString(report_builder::entryText(recorder->entries().back().kind));
    }
    settle();
    EXPECT_TRUE(label("Recording · 45 events"));
    EXPECT_EQ(visible<design::Dot>().front()->tone(), Tone::problem);
    EXPECT_EQ(reading(Key::diagEventsTitle)->toPlainText(), lines.mid(15).join('\n'));
    EXPECT_FALSE(says(Key::diagEventsEmpty));

    click(button(Key::diagClear));
    EXPECT_TRUE(says(Key::diagEventsEmpty));
    EXPECT_TRUE(recorder->isRecording());
}

TEST_F(DiagnosticsPane, LeavingEndsTheRecordingAndReturningStartsAfresh) {
    open(SettingsPane::diagnostics);
    record(100, key_event_kind::KeyDown{});
    open(SettingsPane::general);
    EXPECT_FALSE(recorder->isRecording());
    EXPECT_EQ(recorder->entries().size(), 1U);
    open(SettingsPane::diagnostics);
    EXPECT_TRUE(recorder->isRecording());
    EXPECT_TRUE(recorder->entries().empty());
}

TEST_F(DiagnosticsPane, ProbeNeedsARuleAndTellsWhatArrived) {
    open(SettingsPane::diagnostics);
    EXPECT_TRUE(says(Key::diagProbeNoRule));
    EXPECT_FALSE(button(Key::diagProbeButton, {probed}));
    addTapRule();
    settle();
    EXPECT_FALSE(says(Key::diagProbeNoRule));
    EXPECT_FALSE(says(Key::diagProbeWaiting, {probed}));
    EXPECT_FALSE(says(Key::diagWarningsTitle));

    click(button(Key::diagProbeButton, {probed}));
    EXPECT_TRUE(says(Key::diagProbeWaiting, {probed}));
    EXPECT_TRUE(says(Key::diagProbeNoSignal));
    press(ModifierKey::leftCommand);
    EXPECT_TRUE(says(Key::diagProbeOther, {probed}));
    EXPECT_TRUE(says(Key::diagWarningsTitle));
    EXPECT_TRUE(says(Key::diagWarnTrigger, {probed}));
    press(ModifierKey::rightCommand);
    EXPECT_TRUE(says(Key::diagProbeReceived, {probed}));
    EXPECT_FALSE(says(Key::diagProbeNoSignal));
    EXPECT_FALSE(says(Key::diagWarningsTitle));
}

TEST_F(DiagnosticsPane, NamesWarningsAndRunningApps) {
    runningApps->running = {"keyd", "com.raycast.macos"};
    open(SettingsPane::diagnostics);
    ASSERT_TRUE(label("Raycast, keyd"));
    EXPECT_EQ(label("Raycast, keyd")->palette().windowText(), QApplication::palette().windowText());
    for (int i = 0; i < 4; ++i) {
        recorder->record(diagnostic_kind::Engine{engine_event::Reset{ResetReason::tapDisabled}}, 100 + i);
        recorder->record(
            diagnostic_kind::Engine{engine_event::SwitchFailed{"r", "abc", select_result::NotFound{}}},
            100 + i);
    }
    settle();
    EXPECT_TRUE(says(Key::diagWarnTapDisabled, {"4"}));
    EXPECT_TRUE(says(Key::diagWarnSwitchFailures, {"4"}));
}

TEST_F(DiagnosticsPane, SaysWhenPasswordFieldsGoUnrecognised) {
    const auto tells = [this](PlatformNote note) {
        return label(QString::fromStdString(l10n::note(note))) != nullptr;
    };
    open(SettingsPane::diagnostics);
    EXPECT_FALSE(tells(PlatformNote::passwordsUnknown));
    const auto turns = [this](SecureInputState state) {
        secureInput->told = state;
        secureInput->onStateChange();
        settle();
    };
    turns(SecureInputState::unavailable);
    EXPECT_TRUE(tells(PlatformNote::passwordsUnknown));
    turns(SecureInputState::off);
    EXPECT_TRUE(tells(PlatformNote::passwordsPartlyKnown));
    turns(SecureInputState::watching);
    EXPECT_FALSE(tells(PlatformNote::passwordsPartlyKnown));
}

TEST_F(DiagnosticsPane, ReportIsShownOnDemandAndLeavesInThreeWays) {
    open(SettingsPane::diagnostics);
    EXPECT_FALSE(reading(Key::diagPreview));
    QAbstractButton* title = button(Key::diagPreview);
    title->setFocus();
    QTest::keyClick(title, Qt::Key_Space);
    settle();
    ASSERT_TRUE(reading(Key::diagPreview));
    EXPECT_EQ(reading(Key::diagPreview)->toPlainText().toStdString(), model->buildReport());

    click(button(Key::diagSave)); // cancelled
    EXPECT_FALSE(says(Key::diagCopied));
    EXPECT_EQ(visible<ReadingText>().size(), 1U);
    delivery->location = "/tmp/report.txt";
    click(button(Key::diagSave));
    EXPECT_EQ(visible<ReadingText>().back()->toPlainText(), text(Key::diagSavedTo, {"/tmp/report.txt"}));
    click(button(Key::diagMail));
    EXPECT_EQ(calls.back().substr(0, 4), "mail");
    EXPECT_TRUE(says(Key::diagCopied));
    click(button(Key::diagCopy));
    EXPECT_EQ(calls.back(), "copy");
}

// Pressing the keys that copy is itself recorded.
TEST_F(DiagnosticsPane, EventsStandStillWhileSomeOfThemAreSelected) {
    open(SettingsPane::diagnostics);
    press(ModifierKey::leftShift);
    ReadingText* events = reading(Key::diagEventsTitle);
    const QString before = events->toPlainText();
    events->setFocus();
    events->selectAll();
    press(ModifierKey::leftControl);
    EXPECT_EQ(events->textCursor().selectedText(), before);
    EXPECT_EQ(events->toPlainText(), before);
    QTest::keyClick(events, Qt::Key_Right);
    settle();
    EXPECT_EQ(events->toPlainText().count('\n'), 1);
}

TEST_F(DiagnosticsPane, AFloodOfEventsIsShownNowAndThenOnly) {
    open(SettingsPane::diagnostics);
    int changes = 0;
    press(ModifierKey::leftShift);
    QObject::connect(reading(Key::diagEventsTitle), &QTextEdit::textChanged, [&] { ++changes; });
    for (int i = 0; i < 1000; ++i) {
        record(100,
               key_event_kind::ModifierDown{i % 2 == 0 ? ModifierKey::leftShift : ModifierKey::leftOption});
        QCoreApplication::processEvents();
    }
    settle();
    EXPECT_TRUE(label("Recording · 200 events"));
    EXPECT_LT(changes, 200);
}
