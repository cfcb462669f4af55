// The X server's layout groups: what there is, which is locked, and when that changes.
//
// Owned by the XKB input sources, one for each connection: when the server is lost this is thrown away. The
// locked group is kept in memory from the server's events, so that asking for it costs nothing.
#pragma once

#include "platform/linux/x11/x11_connection.h"
#include "platform/linux/xkb/xkb_groups.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace hopsel {

class XkbServer {
  public:
    struct News {
        bool groups = false; ///< the list may have changed: `readGroups` again
        bool locked = false; ///< `lockedGroup` may have changed
    };

    /// Connects and asks to be told of every change from here on. Throws `std::runtime_error`.
    XkbServer();

    int fileDescriptor() const { return connection_.fileDescriptor(); }
    bool isLost() const { return connection_.isLost(); }

    /// Asks the server, also for the locked group. Nothing if the server is lost.
    std::vector<XkbGroup> readGroups();
    /// As of the last `takeEvents` or `readGroups`; call `takeEvents` after that too, it reads events along.
    int lockedGroup() const { return lockedGroup_; }
    /// Sends the request and does not wait for it to be carried out.
    void lockGroup(int index);
    /// The group that was asked for last has been locked at some moment since, as of what was taken in so
    /// far.
    bool hasBeenLocked() const { return hasBeenLocked_; }

    /// Waits until something has arrived, or for so long.
    void waitForNews(std::chrono::milliseconds atMost) const;
    /// Takes in what has arrived. Never waits.
    News takeEvents();

  private:
    void selectEvents();
    std::vector<std::string> readGroupNames();
    std::string atomName(xcb_atom_t atom);
    void take(const xcb_generic_event_t& event, News& news);
    void noteLocked(int group, std::uint32_t sequence);

    X11Connection connection_;
    std::uint8_t firstEvent_;
    xcb_atom_t rulesNames_;
    xkb_groups::BelievedLayouts believed_;
    int lockedGroup_ = 0;
    std::uint32_t stateSequence_ = 0; ///< the request that asked for the locked group last
    std::uint32_t lockSequence_ = 0;  ///< the request to lock `wantedGroup_`
    int wantedGroup_ = -1;
    bool hasBeenLocked_ = false;
};

} // namespace hopsel
