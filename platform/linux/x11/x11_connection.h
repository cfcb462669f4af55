// A private connection to the X server, and the ownership of what XCB allocates.
//
// Everyone who talks to the server has a connection of its own (the key hook two, the XKB sources one) and
// none uses the toolkit's: event selections and sequence numbers must not be shared.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <xcb/xcb.h>

namespace hopsel {

struct XcbDeleter {
    void operator()(void* memory) const { std::free(memory); }
};
/// A reply, event or error, which XCB allocates with malloc.
template <class T>
using XcbPtr = std::unique_ptr<T, XcbDeleter>;

class X11Connection {
  public:
    /// Connects to the display named by $DISPLAY. Throws `std::runtime_error` in one line a user can act on.
    X11Connection();
    ~X11Connection();
    X11Connection(const X11Connection&) = delete;
    X11Connection& operator=(const X11Connection&) = delete;

    xcb_connection_t* get() const { return connection_; }
    xcb_window_t root() const { return root_; }
    /// Something of this connection's by which another one can have the server cut it: the server knows a
    /// client by what it has made, so here it makes something.
    std::uint32_t handle();
    /// Readable when events arrived; but also look after every blocking reply, which reads events along.
    int fileDescriptor() const { return xcb_get_file_descriptor(connection_); }
    /// The server went away or threw us out. Never undone: open a new connection.
    bool isLost() const { return xcb_connection_has_error(connection_) != 0; }

    /// The next event or error that has arrived, or nothing. Never waits.
    XcbPtr<xcb_generic_event_t> nextEvent() {
        return XcbPtr<xcb_generic_event_t>(xcb_poll_for_event(connection_));
    }
    /// Only what an earlier read brought along; does not look at the socket.
    XcbPtr<xcb_generic_event_t> nextQueuedEvent() {
        return XcbPtr<xcb_generic_event_t>(xcb_poll_for_queued_event(connection_));
    }

    void flush() { xcb_flush(connection_); }
    /// Returns when the server has carried out everything that was asked so far.
    void roundTrip();

    /// The atom of the name, or XCB_ATOM_NONE if the connection is lost.
    xcb_atom_t intern(const char* name);

  private:
    xcb_connection_t* connection_;
    xcb_window_t root_ = XCB_WINDOW_NONE;
    xcb_gcontext_t handle_ = XCB_NONE;
};

/// The event's type without the bit that marks events sent by other clients.
inline std::uint8_t eventType(const xcb_generic_event_t& event) {
    return static_cast<std::uint8_t>(event.response_type & 0x7F);
}

} // namespace hopsel
