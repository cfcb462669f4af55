#include "platform/linux/applications/app_identifier.h"

#include "core/platform/remote_apps.h"

#include <QUtf8StringView>
#include <algorithm>
#include <array>
#include <string_view>

namespace hopsel {

namespace {

bool isUsable(std::string_view name) {
    const auto isControl = [](char letter) { return (letter >= 0 && letter < ' ') || letter == '\x7F'; };
    return !name.empty() && std::none_of(name.begin(), name.end(), isControl) &&
           QUtf8StringView(name.data(), static_cast<qsizetype>(name.size())).isValidUtf8();
}

/// Up to the next NUL, which is taken away as well.
std::string_view takeField(std::string_view& rest) {
    const std::string_view field = rest.substr(0, rest.find('\0'));
    rest.remove_prefix(std::min(rest.size(), field.size() + 1));
    return field;
}

std::string_view desktopFileName(std::string_view file) {
    constexpr std::string_view ending = ".desktop";
    file.remove_prefix(file.rfind('/') + 1); // npos + 1 is 0
    if (file.size() >= ending.size() && file.substr(file.size() - ending.size()) == ending)
        file.remove_suffix(ending.size());
    return file;
}

} // namespace

std::optional<std::string> appIdentifier(const AppProperties& properties) {
    std::string_view gtk = properties.gtkApplicationID;
    std::string_view kde = properties.kdeDesktopFile;
    std::string_view windowClass = properties.windowClass;
    const std::string_view instance = takeField(windowClass);
    const std::array names{takeField(gtk), desktopFileName(takeField(kde)), takeField(windowClass), instance};

    const auto* found = std::find_if(names.begin(), names.end(), [](std::string_view name) {
        return isUsable(name) && remote_apps::isRemote(name);
    });
    if (found == names.end()) found = std::find_if(names.begin(), names.end(), isUsable);
    if (found == names.end()) return std::nullopt;
    return std::string(*found);
}

} // namespace hopsel
