// Key events of the raw stream that wait until it is known whether they were swallowed. See x11_key_hook.h.
//
// Owned by the hook; emptied with its connections. Order is everything here: keys leave in the order in which
// they came, whatever becomes of them.
#pragma once

#include "core/keys/key_event.h"
#include "platform/linux/keys/key_meanings.h"

#include <deque>
#include <functional>
#include <optional>

namespace hopsel {

struct X11PendingKey {
    XKeyCode key = 0;
    bool press = false;
    std::uint16_t keyboard = 0; ///< the master keyboard's device id
    std::uint32_t time = 0;     ///< server time; the grab event of the same key event has the same
    bool synthetic = false;     ///< our own post
    std::uint64_t flagsBefore = 0;
    bool mayBeGrabbed = false;       ///< a grab event may follow
    std::optional<RawEvent> event{}; ///< what to listen to; nothing if the engine need not know
};

class X11PendingKeys {
  public:
    /// Called with each key that turned out not to be grabbed.
    using Ungrabbed = std::function<void(const X11PendingKey&)>;

    bool empty() const { return keys_.empty(); }
    void clear() { keys_.clear(); }

    void push(const X11PendingKey& key) { keys_.push_back({++lastNumber_, key}); }
    /// The number of the key that came last; a barrier placed now settles up to here.
    std::uint64_t lastNumber() const { return lastNumber_; }

    /// Takes out the key that a grab event belongs to. Those before it had none and go to `ungrabbed` first.
    std::optional<X11PendingKey> take(XKeyCode key, bool press, std::uint32_t time,
                                      const Ungrabbed& ungrabbed);

    /// Is the key that a grab event belongs to waiting, with this number or a lower one?
    bool contains(XKeyCode key, bool press, std::uint32_t time, std::uint64_t upTo) const;

    /// Everything up to this number whose grab event has not come will not get one any more.
    void settle(std::uint64_t upTo, const Ungrabbed& ungrabbed);

  private:
    struct Numbered {
        std::uint64_t number;
        X11PendingKey key;

        bool isTwin(XKeyCode code, bool press, std::uint32_t time) const {
            return key.key == code && key.press == press && key.time == time && key.mayBeGrabbed;
        }
    };
    void passFront(const Ungrabbed& ungrabbed);

    std::deque<Numbered> keys_;
    std::uint64_t lastNumber_ = 0;
};

} // namespace hopsel
