#include "model/settings_notice.h"

#include "core/base/overloaded.h"
#include "model/texts/l10n.h"

namespace hopsel {

namespace {

using l10n::Key;
using settings_notice::SaveFailed;

std::string wayOut(const SaveFailed& failed) {
    const auto isOneOf = [&](auto... conditions) { return ((failed.reason == conditions) || ...); };
    if (isOneOf(std::errc::no_space_on_device, std::errc::file_too_large,
                std::error_condition(EDQUOT, std::generic_category())))
        return l10n::t(Key::saveFailedFull);
    if (isOneOf(std::errc::permission_denied, std::errc::operation_not_permitted,
                std::errc::read_only_file_system))
        return l10n::t(Key::saveFailedReadOnly, {failed.folder});
    if (isOneOf(std::errc::too_many_files_open, std::errc::too_many_files_open_in_system))
        return l10n::t(Key::saveFailedDescriptors);
    return l10n::t(Key::saveFailedOther, {failed.description});
}

} // namespace

std::string noticeText(const SettingsNotice& notice) {
    return std::visit(
        Overloaded{
            [](const SaveFailed& failed) { return l10n::t(Key::saveFailed) + " " + wayOut(failed); },
            [](const settings_notice::ChangedOutside&) { return l10n::t(Key::changedOutside); },
            [](const settings_notice::DamagedOutside&) { return l10n::t(Key::damagedOutside); },
            [](const settings_notice::KeptAside& kept) { return l10n::t(Key::keptAside, {kept.path}); },
        },
        notice);
}

std::string noticeLine(const SettingsNotice& notice) {
    return std::visit(
        Overloaded{
            [](const SaveFailed& failed) { return "a change was not saved: " + failed.description; },
            [](const settings_notice::ChangedOutside&) {
                return std::string("the settings file was changed by another program and is read again");
            },
            [](const settings_notice::DamagedOutside&) {
                return std::string("another program left a settings file that cannot be read; the rules "
                                   "stay as they are");
            },
            [](const settings_notice::KeptAside& kept) {
                return "a settings file that could not be read was replaced; a copy is at " + kept.path;
            },
        },
        notice);
}

} // namespace hopsel
