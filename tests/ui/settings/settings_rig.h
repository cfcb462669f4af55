// A Settings window over fakes, and how a user finds things in it.
//
// What is looked for has to be visible, and is named by its text or, where it has none, by its accessible
// name.
#pragma once

#include "support/fakes/model_rig.h"
#include "support/qt_waiting.h"
#include "ui/settings/settings_window_controller.h"
#include "ui/settings/texts.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QLabel>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

namespace hopsel::test {

class SettingsRig : public fakes::ModelRig {
  public:
    /// Launches if need be, shows the pane, and waits until it is there.
    void open(SettingsPane pane) {
        if (!controller) controller = std::make_unique<SettingsWindowController>(model ? *model : launch());
        controller->show(pane);
        settle();
    }
    /// Until nothing waits in the event loop any more, nor for the next look at the recording.
    void settle() const {
        const auto isQuiet = [this] {
            QCoreApplication::processEvents();
            const auto timers = controller->window()->findChildren<QTimer*>();
            return std::none_of(timers.begin(), timers.end(),
                                [](QTimer* timer) { return timer->isActive(); });
        };
        EXPECT_TRUE(runLoopUntil(isQuiet));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }

    template <class Widget = QWidget>
    std::vector<Widget*> visible() const {
        std::vector<Widget*> found;
        for (QWidget* widget : controller->window()->findChildren<QWidget*>()) {
            auto* wanted = dynamic_cast<Widget*>(widget);
            if (wanted != nullptr && wanted->isVisible()) found.push_back(wanted);
        }
        return found;
    }
    QAbstractButton* button(l10n::Key key, const std::vector<std::string>& arguments = {}) const {
        for (auto* button : visible<QAbstractButton>())
            if (button->text() == text(key, arguments) || button->accessibleName() == text(key, arguments))
                return button;
        return nullptr;
    }
    QLabel* label(const QString& words) const {
        for (auto* label : visible<QLabel>())
            if (label->text() == words) return label;
        return nullptr;
    }
    bool says(l10n::Key key, const std::vector<std::string>& arguments = {}) const {
        return label(text(key, arguments)) != nullptr;
    }
    void click(QWidget* widget) const {
        ASSERT_NE(widget, nullptr);
        QTest::mouseClick(widget, Qt::LeftButton);
        settle();
    }
    void addTapRule() const {
        model->addRule(trigger::ModifierTap{ModifierKey::rightCommand}, fakes::korean, fakes::english);
    }

    std::unique_ptr<SettingsWindowController> controller;
};

} // namespace hopsel::test
