#include "ui/design/accessible_roles.h"
#include "ui/design/window_placement.h"
#include "ui/settings/settings_rig.h"

#include <QAccessible>
#include <QApplication>
#include <QScrollArea>

using namespace hopsel;
using namespace hopsel::test;

namespace {

class SettingsWindow : public testing::Test, public SettingsRig {};

/// Inside its parent, and as large as its contents need.
bool isWhole(const QWidget& widget) {
    const QWidget& parent = *widget.parentWidget();
    if (widget.width() > parent.width()) return false;
    const bool isPage = qobject_cast<QScrollArea*>(parent.parentWidget()) != nullptr;
    if (isPage || qobject_cast<const QAbstractScrollArea*>(&parent) != nullptr) return true;
    const int neededHeight = widget.hasHeightForWidth() ? widget.heightForWidth(widget.width())
                                                        : widget.minimumSizeHint().height();
    return parent.rect().contains(widget.geometry()) && widget.width() >= widget.minimumSizeHint().width() &&
           widget.height() >= neededHeight;
}

} // namespace

TEST_F(SettingsWindow, RecordsWhileDiagnosticsAreShownAndCapturesWhileItIsOpen) {
    open(SettingsPane::about);
    controller->show(SettingsPane::diagnostics);
    EXPECT_TRUE(recorder->isRecording());
    record(100, key_event_kind::KeyDown{});
    controller->show(SettingsPane::diagnostics);
    model->captureTrigger([](ModifierKey) {});
    settle();
    int closed = 0;
    controller->onClosed = [&] {
        ++closed;
        EXPECT_FALSE(controller->isVisible() || engine->isCapturing() || recorder->isRecording());
    };
    window()->close();
    EXPECT_EQ(closed, 1);
    open(SettingsPane::general);
    EXPECT_FALSE(recorder->isRecording());
    EXPECT_EQ(recorder->entries().size(), 1U) << "kept, for another pane is shown";
}

TEST_F(SettingsWindow, GeneralSwitchesShowWhatCameOfItAndAskForApprovalWhenItIsNeeded) {
    loginItem->current = LoginItemStatus::requiresApproval;
    engine->canGuard = true;
    open(SettingsPane::general);
    click(l10n::Key::generalShowLabel);
    EXPECT_FALSE(preferences->showLabel);
    click(l10n::Key::generalGuardTaps);
    EXPECT_FALSE(preferences->guards || engine->guards);

    QAbstractButton* const login = find(l10n::Key::generalLaunchAtLogin);
    EXPECT_FALSE(login->isChecked());
    EXPECT_TRUE(says(l10n::Key::generalLaunchNeedsApproval));
    click(l10n::Key::generalOpenLoginItems);
    EXPECT_EQ(calls, fakes::Calls{"open login items"});
    login->setFocus();
    type(Qt::Key_Space);
    EXPECT_EQ(loginItem->current, LoginItemStatus::enabled);
    EXPECT_TRUE(login->isChecked());
    loginItem->refuses = true;
    click(login);
    EXPECT_TRUE(login->isChecked());
    loginItem->current = LoginItemStatus::unavailable;
    click(login);
    EXPECT_FALSE(login->isEnabled() || says(l10n::Key::generalLaunchNeedsApproval));
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
    addRule(rightCommand);
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
                window()->resize(window()->minimumSize());
                std::string cutOff;
                EXPECT_TRUE(runLoopUntil([&] {
                    cutOff.clear();
                    for (const QWidget* widget : visible())
                        if (!isWhole(*widget))
                            cutOff += widget->metaObject()->className() +
                                      widget->property("text").toString().toStdString() + '\n';
                    return cutOff.empty();
                })) << cutOff;
            }
        }
    }
    QApplication::setFont(usual);
}

TEST_F(SettingsWindow, IsAFrameWithTabsToAScreenReaderAndStandsOnTheScreenWithItsTitleBar) {
    design::describeRoles(); // before anything is described
    open(SettingsPane::general);
    EXPECT_TRUE(design::roomOn(*window()->screen()).contains(window()->geometry()));
    const auto& room = design::roomOn(*window()->screen());
    EXPECT_EQ(design::placed({5000, 4000}, room), room);

    EXPECT_EQ(QAccessible::queryAccessibleInterface(window())->role(), QAccessible::Window);
    QAccessibleInterface* const tab = QAccessible::queryAccessibleInterface(find(l10n::Key::tabAbout));
    EXPECT_EQ(tab->role(), QAccessible::PageTab);
    EXPECT_EQ(tab->parent()->role(), QAccessible::PageTabList);
    EXPECT_EQ(tab->text(QAccessible::Name).toStdString(), l10n::t(l10n::Key::tabAbout));
    EXPECT_FALSE(tab->state().selected);
    tab->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    settle();
    EXPECT_TRUE(tab->state().selected);
    EXPECT_TRUE(says(l10n::Key::aboutTagline));
}
