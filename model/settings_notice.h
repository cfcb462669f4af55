// What the user has to hear about the settings file beside its contents: that a change could not be saved, or
// that another program wrote to it. Plain values, and their words.
#pragma once

#include "core/rules/rule_store.h"

#include <string>
#include <system_error>
#include <variant>

namespace hopsel {

namespace settings_notice {
/// The change is not in force; it can be tried again.
struct SaveFailed {
    std::string description; ///< the system's own words
    std::error_code reason;
    std::string folder;
    friend bool operator==(const SaveFailed&, const SaveFailed&) = default;
};
/// What another program wrote is in force.
struct ChangedOutside {
    friend bool operator==(const ChangedOutside&, const ChangedOutside&) = default;
};
/// What another program wrote cannot be read; the rules are as they were, and the file as that one left it.
struct DamagedOutside {
    friend bool operator==(const DamagedOutside&, const DamagedOutside&) = default;
};
/// That was written over; here is a copy.
struct KeptAside {
    std::string path;
    friend bool operator==(const KeptAside&, const KeptAside&) = default;
};
} // namespace settings_notice

using SettingsNotice = std::variant<settings_notice::SaveFailed, settings_notice::ChangedOutside,
                                    settings_notice::DamagedOutside, settings_notice::KeptAside>;

/// What happened and what to do about it.
std::string noticeText(const SettingsNotice& notice);
/// For the log, in English.
std::string noticeLine(const SettingsNotice& notice);

} // namespace hopsel
