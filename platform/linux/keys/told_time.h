// The time of a key event, as another process tells it on the program's own clock.
//
// What was told long ago may be read now, and several events at once: how long a key was held is told by
// their times alone. So an old time is taken for what it is, and only one from the future, which nobody can
// know, is replaced. Owned by who takes the events in, in their order.
#pragma once

#include <algorithm>

namespace hopsel {

class ToldTime {
  public:
    /// In seconds; never after `now`, nor before what was taken last.
    double take(double told, double now) {
        last_ = told <= now ? std::max(told, last_) : now;
        return last_;
    }

  private:
    double last_ = 0;
};

} // namespace hopsel
