// A session with Fcitx5, and the sources as the program uses them.
#pragma once

#include "platform/linux/fcitx/fcitx_input_sources.h"
#include "session/fcitx_session.h"
#include "support/bus_links.h"
#include "support/framework_watch.h"

#include <QDBusConnection>
#include <memory>

namespace hopsel::test {

constexpr auto english = "fcitx:keyboard-us", korean = "fcitx:hangul";
inline const SelectResult noField = select_result::Failed{platform_error::noInputContext};

class FcitxRig : public testing::Test {
  protected:
    /// To the session's bus, and another one each time.
    QDBusConnection connect();
    bool becomeInCharge() const { return watch.comesInCharge(); }
    bool reach(const std::function<bool()>& condition) const { return retryUntil(*sources, condition); }

    session::FcitxSession session;
    std::shared_ptr<FcitxInputSources> sources =
        std::make_shared<FcitxInputSources>(linkTo(session.bus().address()));
    FrameworkWatch watch{*sources};
    LiveInputSourceService service{sources, uptimeSeconds, runFor};
};

} // namespace hopsel::test
