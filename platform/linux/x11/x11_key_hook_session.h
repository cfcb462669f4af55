// What the key hook has while it is open: its two connections and what rests on them. Private to the hook.
#pragma once

#include "platform/linux/x11/x11_connection.h"
#include "platform/linux/x11/x11_key_grabs.h"
#include "platform/linux/x11/x11_key_hold.h"

#include <QSocketNotifier>
#include <array>
#include <cstdint>
#include <vector>

namespace hopsel {

struct X11KeyHookSession {
    /// Throws `std::runtime_error`. `dispatch` is called when something can be read.
    explicit X11KeyHookSession(const std::function<void()>& dispatch);
    ~X11KeyHookSession();
    X11KeyHookSession(const X11KeyHookSession&) = delete;
    X11KeyHookSession& operator=(const X11KeyHookSession&) = delete;

    bool isLost() const { return primary.isLost() || helper.isLost(); }
    void flush() {
        primary.flush();
        helper.flush();
    }
    /// By which the server can be asked to cut the two.
    std::array<std::uint32_t, 2> handles() { return {primary.handle(), helper.handle()}; }
    /// The master keyboard of this id, with its pointer.
    MasterKeyboard master(XDeviceId keyboard) const;

    X11Connection primary; ///< listens, holds the grabs and posts
    X11Connection helper;  ///< takes turns in a hold, see x11_key_hold.h
    std::uint8_t xinputOpcode = 0;
    std::uint8_t xkbFirstEvent = 0;
    bool hasXTest = false;
    std::vector<MasterKeyboard> masters;
    X11KeyGrabs grabs;
    X11KeyHold hold;

  private:
    void selectEvents();

    QSocketNotifier* primaryNotifier_ = nullptr;
    QSocketNotifier* helperNotifier_ = nullptr;
};

} // namespace hopsel
