// A test's own connection to the X server, independent of the code under test.
//
// The classes that type, watch and set layouts each hold one, so that what one of them selects or asks never
// changes what another sees.
#pragma once

#include "session/waiting.h"

#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <xcb/xcb.h>

namespace hopsel::session {

struct XcbFree {
    void operator()(void* memory) const { std::free(memory); }
};
/// What XCB allocates with malloc: replies, events, errors.
template <class T>
using XOwned = std::unique_ptr<T, XcbFree>;

class XDisplay {
  public:
    /// Connects to $DISPLAY. Throws `std::runtime_error`.
    XDisplay();
    ~XDisplay();
    XDisplay(const XDisplay&) = delete;
    XDisplay& operator=(const XDisplay&) = delete;

    xcb_connection_t* get() const { return connection_; }
    xcb_window_t root() const { return screen_->root; }
    const xcb_screen_t& screen() const { return *screen_; }
    bool isLost() const { return xcb_connection_has_error(connection_) != 0; }

    void flush() { xcb_flush(connection_); }
    /// Returns when the server has carried out everything asked so far; throws when it is gone.
    void roundTrip();
    xcb_atom_t atom(const std::string& name);
    /// The property's first 32-bit value, or 0.
    std::uint32_t numberProperty(xcb_window_t window, const std::string& name);

    /// Hands over every event until `done`, which is asked first and after each, or until the deadline.
    bool waitFor(const std::function<void(const xcb_generic_event_t&)>& handle,
                 const std::function<bool()>& done, std::chrono::milliseconds timeout);

  private:
    xcb_connection_t* connection_;
    xcb_screen_t* screen_ = nullptr;
};

inline std::uint8_t typeOf(const xcb_generic_event_t& event) {
    return static_cast<std::uint8_t>(event.response_type & 0x7F);
}

} // namespace hopsel::session
