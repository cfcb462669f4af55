#include "fcitx/fcitx_session.h"

#include "core/platform/linux/main_loop.h"

namespace hopsel::test {

FcitxSession::FcitxSession() {
    for (const char* variable :
         {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"})
        setenv(variable, home.path().c_str(), 1);
    sources = std::make_shared<FcitxInputSources>(connect());
    sources->onInChargeChanged = [this] { ++chargeChanges; };
    sources->onSourcesChanged = [this] { ++sourcesChanges; };
    sources->onSelectedChanged = [this] { ++selectedChanges; };
}

FcitxSession::~FcitxSession() { sources.reset(); }

QDBusConnection FcitxSession::connect() {
    static int count = 0;
    return QDBusConnection::connectToBus(QString::fromStdString(bus.address()),
                                         "fcitx test " + QString::number(++count));
}

std::vector<std::string> FcitxSession::ids() const {
    std::vector<std::string> ids;
    for (const InputSourceInfo& source : sources->enabledKeyboardSources()) ids.push_back(source.id);
    return ids;
}

SwitchOutcome FcitxSession::switchTo(const std::string& id) const {
    return LiveInputSourceService(sources, uptimeSeconds, runFor).switchTo(id);
}

bool FcitxSession::reach(const std::function<bool()>& condition) const {
    return runLoopUntil([&] {
        sources->retry();
        return runLoopUntil(condition, std::chrono::milliseconds(100));
    });
}

} // namespace hopsel::test
