#include "ibus/ibus_rig.h"

#include "support/qt_waiting.h"

namespace hopsel::test {

bool IbusRig::become(bool isInCharge, IbusInputSources& sources) {
    for (int i = 0; i < 200; ++i) {
        if (runLoopUntil([&] { return sources.isInCharge() == isInCharge; }, std::chrono::milliseconds(50)))
            return true;
        sources.retry();
    }
    return false;
}

} // namespace hopsel::test
