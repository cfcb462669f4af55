// One selection: asks Fcitx5 to switch, and finds out what came of it.
//
// Owned by the input sources, which replace it at the next selection; answers that are still on their way are
// then dropped. Fcitx5 answers success to everything, so only reading back tells. It has a current method
// for each text field, and none without one: a field that goes away, as the focus passes from one
// program to another, leaves it without for a moment. The request is repeated for that long, and refused only
// after the answer to the last one, so that what was refused does not happen after all.
#pragma once

#include "core/platform/input_source.h"
#include "platform/linux/fcitx/fcitx_current_method.h"

#include <QDeadlineTimer>
#include <QTimer>
#include <cstdint>
#include <optional>

namespace hopsel {

class FcitxSelection {
  public:
    /// Begins at once.
    FcitxSelection(FcitxDaemon& daemon, FcitxCurrentMethod& current, QString method);
    FcitxSelection(const FcitxSelection&) = delete;
    FcitxSelection& operator=(const FcitxSelection&) = delete;

    const std::optional<SelectResult>& refusal() const { return refusal_; }
    /// An answer of Fcitx5's, to whichever question since the request, named the method.
    bool hasBeenCurrent() const { return hasBeenCurrent_; }
    void noteCurrent(const std::optional<QString>& method) {
        if (method == method_) hasBeenCurrent_ = true;
    }

  private:
    void request();
    void readBack();
    void judge(const std::optional<QString>& method);
    void judgeState(std::optional<int> state);
    void continueWith(void (FcitxSelection::*step)());
    void refuse(std::int32_t code) { refusal_ = select_result::Failed{code}; }

    FcitxDaemon& daemon_;
    FcitxCurrentMethod& current_;
    QString method_;
    std::optional<SelectResult> refusal_;
    bool hasBeenCurrent_ = false;
    std::optional<std::int32_t> error_; ///< what the request was answered with, if not with success
    QDeadlineTimer end_;
    std::optional<QDeadlineTimer> contextDeadline_; ///< while there is no text field
    void (FcitxSelection::*next_)() = nullptr;
    QTimer timer_;
    QObject context_;
};

} // namespace hopsel
