// The command line over the running copy: asks it, and prints what it answers. Needs no display of its own
// and no event loop.
#pragma once

#include "app/command_line.h"
#include "platform/interface/single_instance.h"

namespace hopsel {

/// Prints to standard output, errors to standard error; answers what the process exits with.
int askRunningCopy(const CommandLine& line, const SingleInstance& instance);

} // namespace hopsel
