// The seam of the system log. There is no log file of our own.
//
// One per process, made at start-up and outliving everyone who writes to it.
#pragma once

#include <string_view>

namespace hopsel {

class Log {
  public:
    enum class Level { info, error };

    Log() = default;
    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;
    virtual ~Log() = default;

    /// `category`: the part of the program that speaks, for example "ActiveTap". One line, no line break.
    virtual void write(Level level, std::string_view category, std::string_view message) = 0;
};

} // namespace hopsel
