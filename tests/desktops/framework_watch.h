// Counts what a framework reports, and puts its answers into a form that is easily compared.
#pragma once

#include "core/platform/linux/frameworks/input_framework.h"
#include "core/platform/linux/xkb/platform_errors.h"
#include "support/qt_waiting.h"

#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace hopsel::test {

using Strings = std::vector<std::string>;

inline const SelectResult accepted = select_result::Selected{};
inline const SelectResult gone = select_result::Failed{platform_error::frameworkGone};
inline const SelectResult refused = select_result::Failed{platform_error::frameworkRefused};

struct FrameworkWatch {
    explicit FrameworkWatch(InputFramework& watched) : framework(watched) {
        framework.onSourcesChanged = [this] { ++sources; };
        framework.onSelectedChanged = [this] { ++selected; };
        framework.onInChargeChanged = [this] { ++inCharge; };
    }
    Strings ids() const {
        Strings result;
        for (const InputSourceInfo& source : framework.enabledKeyboardSources()) result.push_back(source.id);
        return result;
    }
    bool lists(const Strings& expected) const {
        return runLoopUntil([&] { return ids() == expected; });
    }
    bool becomesCurrent(const std::string& id) const {
        return runLoopUntil([&] { return framework.currentID() == id; });
    }
    bool isRefused(const SelectResult& reason) const {
        return runLoopUntil([&] { return framework.refusal().has_value(); }) && framework.refusal() == reason;
    }
    bool comesInCharge(bool isInCharge = true) const {
        return runLoopUntil([&] { return framework.isInCharge() == isInCharge; });
    }

    InputFramework& framework;
    int sources = 0;
    int selected = 0;
    int inCharge = 0;
};

} // namespace hopsel::test
