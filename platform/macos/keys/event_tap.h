// One tap on the session's event stream: made, attached to the main loop, watched, and taken down without a
// trace.
//
// A member of the source that uses it, which is its client and thereby outlives it. The client may stop the
// tap or make it anew, and its owner may release both, while an event is being handled.
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
        /// The system took the tap away, with or without a word, or what it hears. It is still started.
        virtual void takenAway() = 0;

      protected:
        ~Client() = default;
    };

    /// Deaf: made, but listed by the system without keys.
    enum class StartResult { started, tapRefused, deaf, runLoopSourceRefused };

    EventTap(Client& client, CGEventTapOptions options, std::initializer_list<CGEventType> types);
    ~EventTap() { stop(); }
    EventTap(const EventTap&) = delete;
    EventTap& operator=(const EventTap&) = delete;

    bool isStarted() const { return static_cast<bool>(port_); }
    /// `isPermitted`: whether the system answers that the keys may be heard. If not, a tap counts as deaf
    /// unless the system's list shows it with its keys. Starting a started tap does nothing, and so does
    /// stopping a stopped one.
    StartResult start(bool isPermitted);
    void stop();
    /// Enables a tap that was taken away: whether it works again.
    bool enableAgain();
    /// Calls `takenAway` if it does not work any more.
    void check();

  private:
    static CGEventRef callback(CGEventTapProxy proxy, CGEventType type, CGEventRef event, void* self);
    bool works() const;

    Client& client_;
    CGEventTapOptions options_;
    CGEventMask mask_ = 0;
    CfRef<CFMachPortRef> port_;
    CfRef<CFRunLoopSourceRef> source_;
};

} // namespace hopsel
