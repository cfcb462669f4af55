// The helper: devices on one side, one session on the other, the filter between them.
//
// Made in main for one session, and over with it; the loop outlives it. No device is open before the session
// has greeted. Where the session ends while keys are down, their keyboards are given back when the fingers
// are off them, or after a moment in any case.
#pragma once

#include "platform/linux/keys_helper/filter/key_filter.h"
#include "platform/linux/keys_helper/live/device_folder.h"
#include "platform/linux/keys_helper/live/event_loop.h"
#include "platform/linux/keys_helper/live/seat_watch.h"
#include "platform/linux/keys_helper/live/session_socket.h"
#include "platform/linux/keys_helper/live/watched_device.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>

namespace hopsel {

class KeyHelper final : KeyFilter::Output {
  public:
    struct Options {
        /// Serves nobody where logind does not say who is in front.
        bool isService = false;
        bool isAnyoneServed = false; ///< for tests, which run beside the session in front
        std::chrono::microseconds answer = helper_wire::answerLimit;
        /// Desktops listen to a new keyboard within some tenths of a second.
        std::chrono::microseconds mirrorSettling{std::chrono::seconds(1)};
        /// For fingers that are still down at the end.
        std::chrono::microseconds lingering{std::chrono::seconds(1)};
        /// For the desktop to read the last keys: what it has not read of a mirror goes with it.
        std::chrono::microseconds farewell{std::chrono::milliseconds(100)};
    };

    KeyHelper(EventLoop& loop, Descriptor session, Options options);
    ~KeyHelper() override;

  private:
    void forward(KeyboardId keyboard, const std::vector<DeviceEvent>& events) override;
    void tell(const to_session::Message& message) override { session_.send(message); }

    void hear();
    void greeted(const to_helper::Hello& hello);
    bool isInFront() const;
    void seatChanged();
    void findDevices();
    void drop(const std::string& path);
    /// After anything that may have changed something.
    void settle();
    void bringDevices();
    void watchMirror(WatchedDevice& device);
    void tellState(to_session::Filter filter);
    void report(to_session::Trouble::Kind kind, const WatchedDevice& device);
    void endSession();
    bool isListening() const { return hasGreeted_ && !session_.isOver(); }

    EventLoop& loop_;
    SessionSocket session_;
    Options options_;
    KeyFilter filter_;
    SeatWatch seat_;
    DeviceFolder folder_;
    EventLoop::Watch sessionWatch_;
    EventLoop::Watch answerTimer_;
    EventLoop::Watch settlingTimer_;
    EventLoop::Watch lingeringTimer_;
    std::map<std::string, std::unique_ptr<WatchedDevice>> devices_; ///< by path
    std::map<KeyboardId, WatchedDevice*> byId_;
    std::set<std::string> reported_;     ///< troubles, until the next declaration
    std::optional<std::uint32_t> timed_; ///< the question that the timer is for
    std::optional<to_session::State> told_;
    KeyboardId lastId_ = 0;
    std::uint8_t unreadable_ = 0;
    bool hasGreeted_ = false;
    bool hasForwarded_ = false;
    bool isEnding_ = false;
};

} // namespace hopsel
