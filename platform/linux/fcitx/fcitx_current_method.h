// Which input method Fcitx5 said was current when it was asked last.
//
// Owned by the input sources. Fcitx5 has no signal for it, so others say when to ask.
#pragma once

#include "platform/linux/fcitx/fcitx_daemon.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace hopsel {

class FcitxCurrentMethod {
  public:
    using AnswerHandler = std::function<void(const std::optional<QString>& method)>;

    FcitxCurrentMethod(FcitxDaemon& daemon, std::function<void()> onAnswer)
        : daemon_(daemon), onAnswer_(std::move(onAnswer)) {}

    /// Unique name; absent when unknown, and when no text field has Fcitx5's attention.
    const std::optional<QString>& method() const { return method_; }

    void ask();
    /// Tells the answer also to `onThisAnswer`, unless `context` has been destroyed: the empty text when
    /// Fcitx5 names no method, absent when it gave no answer that can be used.
    void ask(const QObject& context, AnswerHandler onThisAnswer);

    /// Answers to what was asked so far count no more.
    void dropAnswers() { answered_ = asked_; }
    void forget();

  private:
    FcitxDaemon& daemon_;
    std::function<void()> onAnswer_;
    std::optional<QString> method_;
    std::uint64_t asked_ = 0;
    std::uint64_t answered_ = 0; ///< the question that the latest answer belongs to
    std::unique_ptr<QObject> ofThisOwner_ = std::make_unique<QObject>();
};

} // namespace hopsel
