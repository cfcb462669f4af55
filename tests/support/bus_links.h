// The code under test on a bus of the test's own.
#pragma once

#include "platform/linux/bus/bus_link.h"

#include <string>

namespace hopsel::test {

inline std::shared_ptr<BusLink> linkTo(const std::string& address) {
    return std::make_shared<BusLink>([where = QString::fromStdString(address)] { return where; });
}

} // namespace hopsel::test
