#include "ui/settings/design/colors.h"
#include "ui/settings/design/pane_container.h"
#include "ui/settings/settings_rig.h"

#include <QApplication>
#include <QScrollArea>

using namespace hopsel;
using namespace hopsel::test;

namespace {

class SettingsWindow : public testing::Test, public SettingsRig {};

/// Inside its parent, and as large as its contents need.
void expectWhole(const QWidget& widget) {
    const auto* label = qobject_cast<const QLabel*>(&widget);
    const std::string what = widget.metaObject()->className() + std::string(": ") +
                             (label != nullptr ? label->text().toStdString() : "");
    const QWidget& parent = *widget.parentWidget();
    const bool isPage = qobject_cast<QScrollArea*>(parent.parentWidget()) != nullptr;
    EXPECT_LE(widget.width(), parent.width()) << what;
    if (isPage || qobject_cast<const QAbstractScrollArea*>(&parent) != nullptr) return;
    EXPECT_TRUE(parent.rect().contains(widget.geometry())) << what;
    EXPECT_GE(widget.width(), widget.minimumSizeHint().width()) << what;
    EXPECT_GE(widget.height(), widget.hasHeightForWidth() ? widget.heightForWidth(widget.width())
                                                          : widget.minimumSizeHint().height())
        << what;
}

} // namespace

TEST_F(SettingsWindow, IsMadeOnceAndRemembersItsPaneAndSize) {
    open(SettingsPane::sources);
    QWidget* window = controller->window();
    EXPECT_EQ(window->windowTitle(), "Hopsel");
    EXPECT_EQ(window->size(), QSize(780, 520));
    window->resize(700, 600);
    window->close();
    EXPECT_FALSE(controller->isVisible());
    controller->show();
    settle();
    EXPECT_EQ(controller->window(), window);
    EXPECT_EQ(window->size(), QSize(700, 600));
    EXPECT_TRUE(says(l10n::Key::sourcesTitle));
}

TEST_F(SettingsWindow, ClosingEndsCaptureAndRecordingAndTellsOnce) {
    open(SettingsPane::diagnostics);
    model->captureTrigger([](ModifierKey) {});
    record(100, key_event_kind::KeyDown{});
    int closed = 0;
    controller->onClosed = [&] {
        ++closed;
        EXPECT_FALSE(controller->isVisible());
        EXPECT_FALSE(engine->isCapturing());
        EXPECT_FALSE(recorder->isRecording());
    };
    controller->window()->close();
    EXPECT_EQ(closed, 1);
    EXPECT_EQ(recorder->entries().size(), 1U);
}

TEST_F(SettingsWindow, ShowingDiagnosticsRecordsAtOnceWithoutWipingWhatRuns) {
    open(SettingsPane::about);
    controller->show(SettingsPane::diagnostics);
    EXPECT_TRUE(recorder->isRecording());
    record(100, key_event_kind::KeyDown{});
    controller->show(SettingsPane::diagnostics);
    settle();
    EXPECT_EQ(recorder->entries().size(), 1U);
    recorder->stopRecording();
    controller->show(SettingsPane::diagnostics);
    EXPECT_TRUE(recorder->isRecording());
}

TEST_F(SettingsWindow, ReopenedOnAnotherPaneKeepsTheClosedRecording) {
    open(SettingsPane::diagnostics);
    record(100, key_event_kind::KeyDown{});
    controller->window()->close();
    open(SettingsPane::general);
    EXPECT_FALSE(recorder->isRecording());
    EXPECT_EQ(recorder->entries().size(), 1U);
}

TEST_F(SettingsWindow, SidebarIsOperatedByMouseAndByArrowKeys) {
    open(SettingsPane::general);
    button(l10n::Key::tabGeneral)->setFocus();
    open(SettingsPane::rules); // and the focus with it
    EXPECT_EQ(QApplication::focusWidget(), button(l10n::Key::tabRules));
    click(button(l10n::Key::tabAbout));
    EXPECT_TRUE(says(l10n::Key::aboutVersion, {"0.1.0"}));
    EXPECT_FALSE(says(l10n::Key::generalStatus));
    controller->window()->setFocus();
    QTest::keyClick(controller->window(), Qt::Key_Tab);
    ASSERT_EQ(QApplication::focusWidget(), button(l10n::Key::tabAbout));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Up);
    settle();
    EXPECT_TRUE(says(l10n::Key::diagEventsTitle));
    EXPECT_TRUE(button(l10n::Key::tabDiagnostics)->isChecked());
}

TEST_F(SettingsWindow, WithoutAPanelItHasTheMenuItself) {
    QMenu menu;
    menu.addAction("an action");
    open(SettingsPane::about);
    controller->setMenu(&menu);
    const auto buttons = visible<QAbstractButton>();
    const auto named = std::find_if(buttons.begin(), buttons.end(),
                                    [](QAbstractButton* candidate) { return candidate->text() == "Hopsel"; });
    ASSERT_NE(named, buttons.end());
    QAbstractButton* opener = *named;
    opener->setFocus();
    QTest::keyClick(opener, Qt::Key_Space);
    EXPECT_TRUE(menu.isVisible());
    menu.close();
    EXPECT_TRUE(button(l10n::Key::tabAbout)->isChecked()) << "it is no pane";
    controller->setMenu(nullptr);
    EXPECT_FALSE(opener->isVisible());
}

// In the smallest window, with the longest names.
TEST_F(SettingsWindow, NothingIsCutOffInEitherLanguageAtAnyTextSize) {
    directory->sources.clear();
    for (int i = 0; i < 30; ++i)
        directory->sources.push_back(
            {std::string(90, 'x') + std::to_string(i), std::string(120, 'n'), "", {"ko"}, false});
    directory->current = directory->sources.front().id;
    engine->stateAfterStart = engine_state::Degraded{DegradedReason::permissionMissing};
    loginItem->current = LoginItemStatus::requiresApproval;
    delivery->location = "/" + std::string(200, 'p');
    launch();
    addTapRule();
    const QFont usual = QApplication::font();
    for (const double scale : {1.0, 1.6}) {
        QFont font = usual;
        font.setPixelSize(static_cast<int>(13 * scale));
        QApplication::setFont(font);
        for (const L10nLanguage language : {L10nLanguage::ko, L10nLanguage::en}) {
            l10n::setLanguage(language);
            controller.reset();
            for (const SettingsPane pane : allSettingsPanes) {
                open(pane);
                if (pane == SettingsPane::diagnostics) {
                    model->startProbe();
                    model->copyReport();
                    model->saveReport();
                }
                controller->window()->resize(controller->window()->minimumSize());
                settle();
                for (const QWidget* widget : visible()) expectWhole(*widget);
            }
        }
    }
    QApplication::setFont(usual);
}
