// What the tests of the Rules pane share: a model over fakes, keys that a test presses in our windows, and
// the means to find controls by what a screen reader would say.
#pragma once

#include "app/adapters/local_key_monitoring.h"
#include "support/fakes/model_rig.h"
#include "ui/l10n/l10n.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QWidget>

namespace hopsel::test {

class FakeKeys final : public LocalKeyMonitoring {
  public:
    void start(std::function<void(const LocalKeyDown&)> callback) override {
        onKeyDown = std::move(callback);
    }
    void stop() override { onKeyDown = nullptr; }

    bool isStarted() const { return onKeyDown != nullptr; }
    void press(std::uint16_t keyCode, ModifierSet held = {}, bool isRepeat = false) const {
        const auto callback = onKeyDown; // which may stop us
        callback({keyCode, flagsOf(held), isRepeat});
    }

    std::function<void(const LocalKeyDown&)> onKeyDown;
};

inline QString inEnglish(l10n::Key key) { return QString::fromStdString(l10n::t(key)); }

/// Visible ones only, in the order of their making; null when there is none.
template <class Control>
Control* find(const QWidget& root, const QString& name, int index = 0) {
    for (Control* control : root.findChildren<Control*>()) {
        QString said = control->accessibleName();
        if constexpr (std::is_base_of_v<QAbstractButton, Control>)
            if (said.isEmpty()) said = control->text();
        if (control->isVisible() && said.startsWith(name) && index-- == 0) return control;
    }
    return nullptr;
}

inline bool says(const QWidget& root, const QString& text) {
    const auto labels = root.findChildren<QLabel*>();
    return std::any_of(labels.begin(), labels.end(),
                       [&](const QLabel* label) { return label->isVisible() && label->text() == text; });
}
inline bool says(const QWidget& root, l10n::Key key) { return says(root, inEnglish(key)); }

/// As the user does in the open list.
inline void choose(QComboBox& picker, const QString& entry) {
    picker.setCurrentIndex(picker.findText(entry));
    Q_EMIT picker.activated(picker.currentIndex());
}

class RulesRig : protected fakes::ModelRig {
  protected:
    RulesRig() { launch(); }

    bool isCapturing() const { return engine->isCapturing() || keys->isStarted(); }
    void addRule(const Trigger& trigger) { model->addRule(trigger, fakes::korean, fakes::english); }

    std::shared_ptr<FakeKeys> keys = std::make_shared<FakeKeys>();
};

inline const Trigger rightCommand = trigger::ModifierTap{ModifierKey::rightCommand};
inline const Trigger leftShiftSpace = trigger::Shortcut{{49, {ModifierKey::leftShift}}};

} // namespace hopsel::test
