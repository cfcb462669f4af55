// The keyboard layouts of sway, asked over its own socket ($SWAYSOCK).
//
// A source is a layout of any keyboard, known by its name. The current one is that of the keyboard whose
// layout changed last. Made by start-up, owned by the session's catalog; needs the event loop. A connection
// that ends is taken up by `retry`, which reads the environment anew.
#pragma once

#include "platform/linux/desktops/remembered_framework.h"
#include "platform/linux/desktops/sway_ipc.h"
#include "platform/linux/desktops/sway_keyboards.h"

namespace hopsel {

class SwayLayouts final : public RememberedFramework {
  public:
    SwayLayouts();

    /// While the list is out of date, the request waits for the new one, and `refusal` may become `Failed`.
    SelectResult select(const std::string& id) override;
    /// Also asks again: sway does not tell when a program's virtual keyboard gets its layouts.
    void retry() override;
    Retries retries() const override;

  private:
    void take(quint32 type, const QByteArray& payload);
    void ask();
    void takeInputs(const QByteArray& payload);
    void takeEvent(const QByteArray& payload);
    void takeAnswer(const QByteArray& payload);
    void update();
    std::optional<SelectResult> switchToWanted();
    std::optional<std::string> current() const;

    std::vector<SwayKeyboard> keyboards_;
    std::vector<InputSourceInfo> sources_;
    std::string latest_; ///< the keyboard whose layout changed last
    std::string wanted_;
    bool isAsking_ = false;
    bool isWaiting_ = false; ///< the switch to `wanted_`, for the list that has been asked for
    int unanswered_ = 0;     ///< commands
    SwayIpc ipc_;
};

} // namespace hopsel
