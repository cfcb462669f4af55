// The keyboard layouts of Hyprland, asked and switched over its own sockets.
//
// A source is a layout of the main keyboard, known by its name in the configuration; a switch takes every
// keyboard that has it along. Made by start-up, owned by the session's catalog; needs the event loop. A
// connection that ends is taken up by `retry`, which reads the environment anew.
#pragma once

#include "platform/linux/desktops/hyprland_ipc.h"
#include "platform/linux/desktops/hyprland_keyboards.h"
#include "platform/linux/desktops/remembered_framework.h"

namespace hopsel {

class HyprlandLayouts final : public RememberedFramework {
  public:
    HyprlandLayouts();

    /// `refusal` may become `Failed` when Hyprland has answered.
    SelectResult select(const std::string& id) override;
    /// Also asks again: not every version tells when a keyboard is plugged in.
    void retry() override;
    Retries retries() const override;

  private:
    void ask();
    void takeDevices(const QByteArray& answer);
    void takeEvent(const QByteArray& name, const QByteArray& data);
    void takeAnswer(const QByteArray& answer, unsigned request);
    void update();

    std::vector<HyprlandKeyboard> keyboards_;
    std::vector<InputSourceInfo> sources_;
    std::string wanted_;
    unsigned request_ = 0;    ///< the number of the last switch asked for
    std::size_t open_ = 0;    ///< of its commands, those not answered yet
    bool isReadBack_ = false; ///< what has come of it is being asked
    bool isAsking_ = false;
    bool isStale_ = false; ///< something has changed since it was asked
    HyprlandIpc ipc_;
};

} // namespace hopsel
