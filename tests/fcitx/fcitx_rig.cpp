#include "fcitx/fcitx_rig.h"

#include "core/platform/linux/main_loop.h"

namespace hopsel::test {

FcitxRig::FcitxRig() {
    sources = std::make_shared<FcitxInputSources>(connect());
    sources->onInChargeChanged = [this] { ++chargeChanges; };
    sources->onSourcesChanged = [this] { ++sourcesChanges; };
    sources->onSelectedChanged = [this] { ++selectedChanges; };
}

FcitxRig::~FcitxRig() { sources.reset(); }

QDBusConnection FcitxRig::connect() {
    static int count = 0;
    return QDBusConnection::connectToBus(QString::fromStdString(session.bus().address()),
                                         "fcitx test " + QString::number(++count));
}

std::vector<std::string> FcitxRig::ids() const {
    std::vector<std::string> ids;
    for (const InputSourceInfo& source : sources->enabledKeyboardSources()) ids.push_back(source.id);
    return ids;
}

SwitchOutcome FcitxRig::switchTo(const std::string& id) const {
    return LiveInputSourceService(sources, uptimeSeconds, runFor).switchTo(id);
}

bool FcitxRig::reach(const std::function<bool()>& condition) const {
    return runLoopUntil([&] {
        sources->retry();
        return runLoopUntil(condition, std::chrono::milliseconds(100));
    });
}

} // namespace hopsel::test
