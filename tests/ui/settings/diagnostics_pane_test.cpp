#include "core/diagnostics/report_builder.h"
#include "model/texts/platform_notes.h"
#include "ui/design/reading_text.h"
#include "ui/design/texts.h"
#include "ui/settings/settings_rig.h"

#include <QStringList>

using namespace hopsel;
using namespace hopsel::test;
using design::ReadingText;
using l10n::Key;

namespace {

class DiagnosticsPane : public testing::Test, public SettingsRig {
  public:
    DiagnosticsPane() { open(SettingsPane::diagnostics); }
};

} // namespace

TEST_F(DiagnosticsPane, SaysWhenPasswordFieldsGoUnrecognised) {
    const auto tells = [this](PlatformNote note) { return says(QString::fromStdString(l10n::note(note))); };
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
    EXPECT_FALSE(find<ReadingText>(Key::diagPreview));
    find(Key::diagPreview)->setFocus();
    type(Qt::Key_Space);
    ASSERT_TRUE(find<ReadingText>(Key::diagPreview));
    EXPECT_EQ(find<ReadingText>(Key::diagPreview)->toPlainText().toStdString(), model->buildReport());

    click(Key::diagSave); // cancelled
    EXPECT_FALSE(says(Key::diagCopied));
    EXPECT_EQ(visible<ReadingText>().size(), 1U);
    delivery->location = "/tmp/report.txt";
    click(Key::diagSave);
    EXPECT_EQ(visible<ReadingText>().back()->toPlainText(), text(Key::diagSavedTo, {"/tmp/report.txt"}));
    click(Key::diagMail);
    EXPECT_EQ(calls.back().substr(0, 4), "mail");
    EXPECT_TRUE(says(Key::diagCopied));
    click(Key::diagCopy);
    EXPECT_EQ(calls.back(), "copy");
}

TEST_F(DiagnosticsPane, AFloodOfEventsIsCountedAndShownNowAndThenOnlyByItsLastThirty) {
    EXPECT_TRUE(says(Key::diagEventsEmpty));
    record(100, key_event_kind::KeyDown{});
    settle();
    auto* const events = find<ReadingText>(Key::diagEventsTitle);
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
    EXPECT_TRUE(says("Recording · 200 events"));
    EXPECT_EQ(events->toPlainText(), lines.mid(970).join('\n'));
    EXPECT_LT(changes, 200);
    click(Key::diagClear);
    EXPECT_TRUE(says(Key::diagEventsEmpty) && recorder->isRecording());
}
