// Nothing that a Linux user reads is macOS's: not in the tables, not in any window, not in the menu.
#include "platform/linux/texts/linux_words.h"

#include "core/diagnostics/bug_report_mail.h"
#include "model/menu/menu_builder.h"
#include "model/texts/issue_texts.h"
#include "model/texts/platform_notes.h"
#include "ui/onboarding/onboarding_window_controller.h"
#include "ui/settings/settings_rig.h"

#include <QTextEdit>
#include <gmock/gmock.h>

namespace hopsel::test {
namespace {

using testing::HasSubstr;

constexpr L10nLanguage languages[] = {L10nLanguage::ko, L10nLanguage::en};
constexpr const char* foreign[] = {"⌘",
                                   "⌥",
                                   "⌃",
                                   "⇧",
                                   "macOS",
                                   "Mac",
                                   "System Settings",
                                   "menu bar",
                                   "Accessibility",
                                   "Screen Sharing",
                                   "Karabiner",
                                   "Input Monitoring",
                                   "Forward Delete",
                                   "Return",
                                   "시스템 설정",
                                   "메뉴바",
                                   "메뉴 막대",
                                   "접근성 권한",
                                   "접근성 필요",
                                   "접근성 설정",
                                   "입력 모니터링",
                                   "화면 공유"};

void expectOurs(const std::string& text, const std::string& where) {
    for (const char* word : foreign) EXPECT_THAT(text, testing::Not(HasSubstr(word))) << where;
}

class LinuxWords : public testing::Test, public SettingsRig {
  protected:
    LinuxWords() { use({}); }
    ~LinuxWords() override {
        l10n::setSystemWords({});
        l10n::setLanguage(L10nLanguage::en);
    }
    static void use(PrintedKeys printed, KeysFrom keysFrom = KeysFrom::xServer) {
        l10n::setSystemWords(linuxWords([printed] { return printed; }, keysFrom));
    }

    /// Everything that is shown or read out, seen or not, but for the report, which is the same everywhere.
    static void expectOurs(QWidget& window, const std::string& where) {
        for (QWidget* widget : window.findChildren<QWidget*>()) {
            QStringList texts{widget->accessibleName(),
                              widget->accessibleDescription(),
                              widget->toolTip(),
                              widget->windowTitle(),
                              widget->property("text").toString(),
                              widget->property("placeholderText").toString()};
            if (const auto* list = qobject_cast<QComboBox*>(widget))
                for (int i = 0; i < list->count(); ++i) texts += list->itemText(i);
            if (const auto* edit = qobject_cast<QTextEdit*>(widget))
                if (widget->accessibleName() != QString::fromStdString(l10n::t(l10n::Key::diagPreview)))
                    texts += edit->toPlainText();
            test::expectOurs(texts.join('\n').toStdString(), where);
        }
    }
    void playEverything() {
        const auto event = [&](const EngineEvent& told) {
            recorder->record(diagnostic_kind::Engine{told}, 101);
            emitEvent(told);
        };
        record(101, key_event_kind::ModifierDown{ModifierKey::leftCommand});
        recorder->record(diagnostic_kind::Key{key_event_kind::ModifierUp{ModifierKey::rightOption},
                                              {ModifierKey::leftShift},
                                              KeyVerdict::suppressed},
                         101);
        event(engine_event::Switched{"r", "abc", "hangul", false, 503});
        event(engine_event::SwitchFailed{"r", "gone", select_result::Failed{5}});
        event(engine_event::RuleSkipped{"r", skip_reason::RemoteApp{}});
        event(engine_event::RuleSkipped{"r", skip_reason::GuestKeyUnavailable{}});
        event(engine_event::RuleSkipped{"r", skip_reason::BrokenSource{{"gone"}}});
        event(engine_event::GuestKeySent{"r", AppModel::guestKey});
        event(engine_event::Reset{ResetReason::tapDisabled});
        event(engine_event::ShortcutStatusChanged{ShortcutStatus::unavailable});
        event(engine_event::StateChanged{engine_state::Degraded{DegradedReason::permissionMissing}});
    }
};

TEST_F(LinuxWords, NameKeysByWhatIsPrintedOnThem) {
    const ShortcutKey many{40,
                           {ModifierKey::leftShift, ModifierKey::rightOption, ModifierKey::leftControl,
                            ModifierKey::rightShift, ModifierKey::rightCommand}};
    EXPECT_EQ(l10n::shortcutName(many), "Right Super + Left Ctrl + Right Alt + Left Shift + Right Shift + K");
    EXPECT_EQ(l10n::shortcutName({49, {ModifierKey::leftShift}}), "Left Shift + Space");
    use({PrintedKeys::RightAlt::altGr, PrintedKeys::RightCtrl::ctrl});
    EXPECT_EQ(l10n::shortcutName({36, {ModifierKey::rightOption}}), "AltGr + Enter");
    l10n::setLanguage(L10nLanguage::ko);
    use({PrintedKeys::RightAlt::hangul, PrintedKeys::RightCtrl::hanja});
    EXPECT_EQ(l10n::keyName(ModifierKey::rightOption) + l10n::keyName(ModifierKey::rightControl),
              "한/영한자");
    EXPECT_EQ(l10n::shortcutName({76, {ModifierKey::leftOption}}), "왼쪽 Alt + Enter (키패드)");
    std::string labels;
    for (const int code : {51, 117, 114, 105, 107, 113, 110, 104, 71, 10, 399, 49, 122, 0})
        labels += l10n::keyLabel(static_cast<std::uint16_t>(code)) + ", ";
    EXPECT_EQ(labels,
              "Backspace, Delete, Insert, Print, Scroll Lock, Pause, Menu, 変換 (Henkan), Num Lock, <, "
              "Fn, Space, F1, A, ");
}

TEST_F(LinuxWords, AreInBothTablesWithTheSameArgumentsAsMacOSs) {
    const auto arguments = [](const std::string& text) {
        int count = 0;
        for (auto at = text.find("%@"); at != std::string::npos; at = text.find("%@", at + 2)) ++count;
        return count;
    };
    for (const L10nLanguage language : languages) {
        l10n::setLanguage(language);
        for (const l10n::Key key : l10n::allKeys()) {
            for (const KeysFrom keysFrom :
                 {KeysFrom::gnomeExtension, KeysFrom::keyHelper, KeysFrom::xServer}) {
                use({}, keysFrom);
                const std::string text = l10n::t(key);
                test::expectOurs(text, std::string(l10n::rawValue(key)));
                l10n::setSystemWords({});
                EXPECT_EQ(arguments(text), arguments(l10n::t(key))) << l10n::rawValue(key);
            }
            use({});
        }
        for (int note = 0; note <= static_cast<int>(PlatformNote::passwordsPartlyKnown); ++note)
            test::expectOurs(l10n::note(static_cast<PlatformNote>(note)), "note " + std::to_string(note));
        for (int code = 0; code < 700; ++code)
            test::expectOurs(l10n::keyLabel(static_cast<std::uint16_t>(code)), std::to_string(code));
    }
}

TEST_F(LinuxWords, AreInEveryWindowAndInTheMenu) {
    launch();
    for (const Trigger& trigger : {rightCommand, leftShiftSpace, Trigger(trigger::Shortcut{systemKey})})
        addRule(trigger);
    settings->accessibility = false;
    loginItem->current = LoginItemStatus::requiresApproval;
    for (const L10nLanguage language : languages) {
        l10n::setLanguage(language);
        for (const ShortcutStatus status : {ShortcutStatus::running, ShortcutStatus::unavailable}) {
            emitEvent(engine_event::ShortcutStatusChanged{status});
            controller.reset();
            for (const SettingsPane pane : allSettingsPanes) {
                open(pane);
                if (pane == SettingsPane::diagnostics) {
                    playEverything();
                    model->startProbe();
                    model->copyReport();
                } else if (pane == SettingsPane::rules) {
                    click(l10n::Key::rulesAdd);
                    click(find(l10n::Key::addRuleKey));
                    expectOurs(*window(), "sheet");
                }
                settle();
                expectOurs(*window(), "pane " + std::to_string(static_cast<int>(pane)));
            }
            for (const MenuItemSpec& item : menu_builder::items(model->menuState()))
                if (const auto* line = std::get_if<menu_item::Info>(&item))
                    test::expectOurs(line->text, "menu");
        }
        OnboardingWindowController introduction(*model);
        introduction.show();
        settle();
        expectOurs(*introduction.window(), "introduction");
    }
}

TEST_F(LinuxWords, TellEventsInTheUsersLanguageAndLeaveTheReportAsItIs) {
    open(SettingsPane::diagnostics);
    playEverything();
    settle();
    const std::string list = find<QTextEdit>(l10n::Key::diagEventsTitle)->toPlainText().toStdString();
    EXPECT_THAT(
        list, HasSubstr("Left Super pressed | passed on\nRight Alt released | held: Left Shift | held back"));
    EXPECT_THAT(list,
                HasSubstr("Switched: ABC → Korean (not verified, 503 ms)\nSwitch failed: gone (error 5)"));
    EXPECT_THAT(list, HasSubstr("Sent to the virtual machine: Left Ctrl + Space"));
    EXPECT_THAT(model->buildReport(), HasSubstr("modifier 누름 leftCommand"));
    EXPECT_THAT(bug_report_mail::composeURL("1", l10n::systemWords().pasteKeys), HasSubstr("(Ctrl+V)"));
}

} // namespace
} // namespace hopsel::test
