// One input framework of a Linux session, as the catalog of the session sees it: Fcitx5, IBus, a desktop's
// own layouts, or the X server's.
//
// Each implementation watches its own daemon for as long as it lives, whether or not it is in charge, answers
// from memory, and asks and selects without waiting: what the daemon says arrives through the event loop, and
// ends a wait for a selection there (`InputSourceCatalog::refusal`). Owned by the session's catalog, which
// takes the first framework in charge, in its own order.
#pragma once

#include "core/platform/input_source_service.h"

#include <functional>

namespace hopsel {

class InputFramework : public InputSourceCatalog {
  public:
    /// Its daemon is there, has told its sources, and can be asked to switch.
    virtual bool isInCharge() const = 0;
    /// What it lists can be switched, if maybe not all of it. False where that takes somebody else, who is
    /// not there.
    virtual bool canSwitch() const { return true; }
    /// For what no signal tells, and for taking up a connection that was lost.
    virtual void retry() {}
    /// When `retry` is to be called every two seconds. Asked each time before the event loop sleeps.
    enum class Retries {
        never,
        whileUsed, ///< around what the user does: only that changes what no signal tells
        always,    ///< it is broken
    };
    virtual Retries retries() const { return Retries::never; }

    /// The program in which its sources are set up; null where the desktop's settings have them.
    virtual const char* settingsProgram() const { return nullptr; }

    /// The current source may be another than the one told: asks, where no signal tells. Often called, so
    /// cheap.
    virtual void askCurrent() {}

    /// `isAsking` is another than it was: whether there is a daemon, or what it has, has become known, or is
    /// asked anew. Called from the event loop.
    std::function<void()> onAskingChanged;
    /// `isInCharge` is another than it was. Called from the event loop.
    std::function<void()> onInChargeChanged;
};

} // namespace hopsel
