// Where the key helper is to be had: as a service of the system, or as a child of ours for users who may read
// the keyboards themselves.
//
// A plain value and questions to the file system, which never wait.
#pragma once

#include <string>

namespace hopsel {

struct HelperPlaces {
    std::string socket;  ///< of the service
    std::string program; ///< empty: not installed
    std::string devices = "/dev/input";
    std::string enabler =
        {}; ///< turns the service on, run by the system's administrator; empty: there is none

    static HelperPlaces live();
    /// Whether the service manager listens there for us.
    bool hasService() const;
    /// Whether this user may read any keyboard or mouse.
    bool canReadDevices() const;
};

} // namespace hopsel
