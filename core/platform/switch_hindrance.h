// What stands in the way of a switch that the platform refused, as far as a person can do something about it.
#pragma once

namespace hopsel {

enum class SwitchHindrance {
    unknown,
    noTextField,     ///< the input method switches only where someone types
    notReachable,    ///< whoever switches is gone at the moment
    notSwitchable,   ///< it cannot switch to this source
    notPossibleHere, ///< this desktop lets nobody else switch
};

} // namespace hopsel
