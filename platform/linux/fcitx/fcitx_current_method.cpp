#include "platform/linux/fcitx/fcitx_current_method.h"

#include "platform/linux/fcitx/fcitx_replies.h"

#include <utility>

namespace hopsel {

void FcitxCurrentMethod::ask() { ask(*ofThisOwner_, {}); }

void FcitxCurrentMethod::ask(const QObject& context, AnswerHandler onThisAnswer) {
    daemon_.call(
        "CurrentInputMethod", {}, context,
        [this, question = ++asked_, onThisAnswer = std::move(onThisAnswer)](const QDBusMessage& reply) {
            const std::optional<QString> answer = fcitx::textIn(reply);
            if (answer && question > answered_) {
                answered_ = question;
                method_ = answer->isEmpty() ? std::nullopt : answer;
                onAnswer_();
            }
            if (onThisAnswer) onThisAnswer(answer);
        });
}

void FcitxCurrentMethod::forget() {
    ofThisOwner_ = std::make_unique<QObject>();
    dropAnswers();
    method_.reset();
}

} // namespace hopsel
