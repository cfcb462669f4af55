// The key helper as a child of ours. Stateless: the child ends by itself when its socket does, which may be a
// moment after ours has closed, and is buried when it has.
#pragma once

#include <string>

namespace hopsel::helper_child {

/// Our end of the socket to it; -1 if it cannot be started. Needs an application object.
int start(const std::string& program);

} // namespace hopsel::helper_child
