// A window of the program over a model with fakes, and how a user finds things in it.
//
// What is looked for has to be visible, and is named by the beginning of its accessible name or, where it
// has none, of its text.
#pragma once

#include "model/texts/l10n.h"
#include "support/fakes/model_rig.h"
#include "support/qt_waiting.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QCoreApplication>
#include <QLabel>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <gtest/gtest.h>

namespace hopsel::test {

class WindowRig : public fakes::ModelRig {
  public:
    WindowRig() { l10n::setLanguage(L10nLanguage::en); }
    virtual ~WindowRig() = default;
    virtual QWidget* window() const = 0;

    /// Until nothing waits in the event loop any more, nor for the next look at the recording.
    void settle() const {
        const auto isQuiet = [this] {
            QCoreApplication::processEvents();
            if (window() == nullptr) return true;
            const auto timers = window()->findChildren<QTimer*>();
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
        for (QWidget* widget : window()->findChildren<QWidget*>()) {
            auto* wanted = dynamic_cast<Widget*>(widget);
            if (wanted != nullptr && wanted->isVisible()) found.push_back(wanted);
        }
        return found;
    }
    template <class Control = QAbstractButton>
    Control* find(const QString& name, int index = 0) const {
        for (Control* control : visible<Control>()) {
            QString said = control->accessibleName();
            if constexpr (std::is_base_of_v<QAbstractButton, Control>)
                if (said.isEmpty()) said = control->text();
            if (said.startsWith(name) && index-- == 0) return control;
        }
        return nullptr;
    }
    template <class Control = QAbstractButton>
    Control* find(l10n::Key key, int index = 0) const {
        return find<Control>(QString::fromStdString(l10n::t(key)), index);
    }
    bool says(const QString& beginning) const {
        const auto labels = visible<QLabel>();
        return std::any_of(labels.begin(), labels.end(),
                           [&](const QLabel* label) { return label->text().startsWith(beginning); });
    }
    bool says(l10n::Key key) const { return says(QString::fromStdString(l10n::t(key))); }

    void click(QWidget* widget) const {
        ASSERT_NE(widget, nullptr);
        QTest::mouseClick(widget, Qt::LeftButton);
        settle();
    }
    void click(l10n::Key key) const { click(find(key)); }
    /// Where the keyboard is.
    void type(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const {
        QWidget* const focused = window()->focusWidget();
        QTest::keyClick(focused != nullptr ? focused : window(), key, modifiers);
        settle();
    }
    /// As the user does in the open list.
    void choose(QComboBox* picker, const QString& entry) const {
        picker->setCurrentIndex(picker->findText(entry));
        Q_EMIT picker->activated(picker->currentIndex());
        settle();
    }
    void activate() const {
        window()->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window()));
    }
    void addRule(const Trigger& trigger) const { model->addRule(trigger, fakes::korean, fakes::english); }
    /// From now on nothing can be stored.
    void blockFile() const {
        std::filesystem::remove_all(file);
        std::filesystem::create_directories(file / "in the way");
    }
};

inline const Trigger rightCommand = trigger::ModifierTap{ModifierKey::rightCommand};
inline const Trigger leftShiftSpace = trigger::Shortcut{{49, {ModifierKey::leftShift}}};

} // namespace hopsel::test
