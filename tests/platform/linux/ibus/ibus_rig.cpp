#include "platform/linux/ibus/ibus_rig.h"

#include "support/framework_watch.h"

namespace hopsel::test {

bool IbusRig::become(bool isInCharge, IbusInputSources& sources) {
    return retryUntil(sources, [&] { return sources.isInCharge() == isInCharge; });
}

} // namespace hopsel::test
