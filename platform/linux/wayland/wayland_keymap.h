// The compositor's keymap: what its keys mean, for those who are told of keys by their numbers.
//
// A connection of its own, which shows no window: a compositor hands the keymap to everybody. Needs the event
// loop. Where there is no compositor nothing is ever told; `start` may be called again then.
#pragma once

#include "platform/linux/keys/key_meanings.h"

#include <QSocketNotifier>
#include <functional>
#include <memory>
#include <wayland-client.h>

namespace hopsel {

class WaylandKeymap {
  public:
    WaylandKeymap();
    ~WaylandKeymap() { stop(); }
    WaylandKeymap(const WaylandKeymap&) = delete;
    WaylandKeymap& operator=(const WaylandKeymap&) = delete;

    /// Does nothing while there is a connection.
    void start();

    /// With each keymap that can be read, from the event loop.
    std::function<void(const KeyMeanings& meanings)> onKeymap;

  private:
    struct Events; // what the compositor calls

    void stop();
    void read();
    void takeKeymap(int file, std::size_t size) const;

    wl_display* display_ = nullptr;
    wl_registry* registry_ = nullptr;
    wl_seat* seat_ = nullptr;
    wl_keyboard* keyboard_ = nullptr;
    std::unique_ptr<xkb_context, void (*)(xkb_context*)> context_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace hopsel
