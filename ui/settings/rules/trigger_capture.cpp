#include "ui/settings/rules/trigger_capture.h"

#include <QPointer>
#include <QTimer>
#include <utility>

namespace hopsel {

TriggerCapture::TriggerCapture(AppModel& model, std::shared_ptr<LocalKeyMonitoring> keys,
                               std::optional<Trigger> initial)
    : model_(model), monitor_(std::move(keys)), trigger_(initial) {}

TriggerCapture::~TriggerCapture() {
    monitor_.stop();
    model_.cancelCapture();
}

void TriggerCapture::start() {
    const int token = ++token_;
    refused_.reset();
    const QPointer<TriggerCapture> self(this);
    const bool isStarted = model_.captureTrigger([self](ModifierKey key) {
        if (self) self->captured(trigger::ModifierTap{key});
    });
    if (!isStarted) {
        end(State::unavailable);
        return;
    }
    const auto onKey = [self](std::optional<ShortcutKey> key) {
        if (!self) return;
        if (key)
            self->captured(trigger::Shortcut{*key});
        else
            self->end(State::idle);
    };
    monitor_.start(onKey, [self](UnusableKey key) {
        if (!self) return;
        self->refused_ = key;
        if (self->onChange) self->onChange();
    });
    QTimer::singleShot(timeout_, this, [this, token] {
        if (token == token_ && isCapturing()) end(State::timedOut);
    });
    state_ = State::capturing;
    if (onChange) onChange();
}

void TriggerCapture::cancel() { end(isCapturing() ? State::idle : state_); }

void TriggerCapture::captured(const Trigger& trigger) {
    trigger_ = trigger;
    end(State::idle);
}

void TriggerCapture::end(State state) {
    monitor_.stop();
    model_.cancelCapture();
    refused_.reset();
    state_ = state;
    if (onChange) onChange();
}

} // namespace hopsel
