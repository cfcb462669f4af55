#include "core/diagnostics/report_builder.h"
#include "ui/l10n/platform_notes.h"
#include "ui/settings/design/reading_text.h"
#include "ui/settings/settings_rig.h"

#include <QStringList>

using namespace hopsel;
using namespace hopsel::test;
using design::ReadingText;
using l10n::Key;

namespace {

class DiagnosticsPane : public testing::Test, public SettingsRig {
  public:
    ReadingText* reading(Key name) const {
        for (auto* candidate : visible<ReadingText>())
            if (candidate->accessibleName() == text(name)) return candidate;
        return nullptr;
    }
};

} // namespace

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

TEST_F(DiagnosticsPane, AFloodOfEventsIsCountedAndShownNowAndThenOnlyByItsLastThirty) {
    open(SettingsPane::diagnostics);
    EXPECT_TRUE(says(Key::diagEventsEmpty));
    record(100, key_event_kind::KeyDown{});
    settle();
    ReadingText* events = reading(Key::diagEventsTitle);
    int changes = 0;
    QObject::connect(events, &QTextEdit::textChanged, [&] { ++changes; });
    QStringList lines;
    for (int i = 0; i < 1000; ++i) {
        const auto key = i % 2 == 0 ? ModifierKey::leftShift : ModifierKey::leftOption;
        record(100 + i, key_event_kind::ModifierDown{key});
        lines += QString::fromStdString(report_builder::entryText(recorder->entries().back().kind));
        QCoreApplication::processEvents();
    }
    settle();
    EXPECT_TRUE(label("Recording · 200 events"));
    EXPECT_EQ(events->toPlainText(), lines.mid(970).join('\n'));
    EXPECT_LT(changes, 200);
    click(button(Key::diagClear));
    EXPECT_TRUE(says(Key::diagEventsEmpty) && recorder->isRecording());
}
