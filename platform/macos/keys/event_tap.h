// One tap on the session's event stream: made, attached to the main loop, given back when the system takes it
// away, and taken down without a trace.
//
// A member of the source that uses it, which is its client and thereby outlives it. The client may stop the
// tap, and its owner may release both, while an event is being handled.
#pragma once

#include "platform/macos/base/cf_ref.h"

#include <CoreGraphics/CoreGraphics.h>
#include <initializer_list>

namespace hopsel {

class EventTap {
  public:
    class Client {
      public:
        /// True swallows the event if the tap filters; a listener's answer does not count.
        virtual bool tapped(CGEventType type, CGEventRef event) = 0;
        /// The system took the tap away: whether it is to be put back at once.
        virtual bool mayReenable() { return true; }
        /// The system took the tap away. It was put back, if `reenabled`.
        virtual void tapDisabled(bool reenabled) = 0;

      protected:
        ~Client() = default;
    };

    enum class StartResult { started, tapRefused, runLoopSourceRefused };

    EventTap(Client& client, CGEventTapOptions options, std::initializer_list<CGEventType> types);
    ~EventTap() { stop(); }
    EventTap(const EventTap&) = delete;
    EventTap& operator=(const EventTap&) = delete;

    bool isStarted() const { return static_cast<bool>(port_); }
    /// Starting a started tap does nothing, and so does stopping a stopped one.
    StartResult start();
    void stop();
    /// Whether the system took it away without a word, and does what is done after a word if so.
    void check();

  private:
    static CGEventRef callback(CGEventTapProxy proxy, CGEventType type, CGEventRef event, void* self);
    void takenAway();
    bool reenable();

    Client& client_;
    CGEventTapOptions options_;
    CGEventMask mask_ = 0;
    CfRef<CFMachPortRef> port_;
    CfRef<CFRunLoopSourceRef> source_;
};

} // namespace hopsel
