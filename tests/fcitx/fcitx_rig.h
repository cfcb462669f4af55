// A session with Fcitx5, and the sources as the program uses them.
#pragma once

#include "core/platform/input_source_switcher.h"
#include "core/platform/linux/fcitx/fcitx_input_sources.h"
#include "core/platform/linux/xkb/platform_errors.h"
#include "session/fcitx_session.h"
#include "support/qt_waiting.h"

#include <QDBusConnection>
#include <gmock/gmock.h>
#include <memory>

namespace hopsel::test {

constexpr auto english = "fcitx:keyboard-us", korean = "fcitx:hangul";
const SelectResult selected = select_result::Selected{}, notFound = select_result::NotFound{};
const SelectResult gone = select_result::Failed{platform_error::frameworkGone};
const SelectResult refused = select_result::Failed{platform_error::frameworkRefused};
const SelectResult noField = select_result::Failed{platform_error::noInputContext};

class FcitxRig : public testing::Test {
  protected:
    FcitxRig();
    ~FcitxRig() override;

    QDBusConnection connect();

    std::vector<std::string> ids() const;
    SwitchOutcome switchTo(const std::string& id) const;
    auto isCurrent(const char* id) const {
        return [this, id] { return sources->currentID() == id; };
    }
    bool becomeInCharge() const {
        return runLoopUntil([this] { return sources->isInCharge(); });
    }
    /// Asks as the program's timer does, until the condition holds.
    bool reach(const std::function<bool()>& condition) const;

    session::FcitxSession session;
    QDBusConnection connection = connect();
    std::shared_ptr<FcitxInputSources> sources;
    int chargeChanges = 0, sourcesChanges = 0, selectedChanges = 0;
};

} // namespace hopsel::test
