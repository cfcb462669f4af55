// The helper's loop: systemd's, with the two kinds of sources that the helper has.
//
// Made in main, outlives everything that watches. A source that is destroyed is never called again; it may be
// destroyed from within its own call. One thread.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <systemd/sd-event.h>

namespace hopsel {

class EventLoop {
  public:
    /// Owns what it calls.
    class Watch {
      public:
        Watch() = default;
        bool isSet() const { return state_ != nullptr; }
        void clear() { state_.reset(); }

      private:
        friend class EventLoop;
        struct State;
        std::shared_ptr<State> state_;
    };

    /// Throws std::system_error where there is none to be had.
    EventLoop();

    /// Whenever the descriptor can be read, or is at its end.
    Watch whenReadable(int descriptor, std::function<void()> call);
    /// Once.
    Watch after(std::chrono::microseconds time, std::function<void()> call);

    /// Until `end`. Anything that holds it up for two seconds has the kernel kill the process: what is taken
    /// from the desktop is its again then, and that is better than keys that go nowhere.
    void run();
    void end() { isOver_ = true; }

  private:
    struct Unref {
        void operator()(sd_event* loop) const { sd_event_unref(loop); }
    };
    std::unique_ptr<sd_event, Unref> loop_;
    bool isOver_ = false;
};

} // namespace hopsel
