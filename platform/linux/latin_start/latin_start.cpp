#include "platform/linux/latin_start/latin_start.h"

#include "platform/linux/dconf/stored_settings.h"
#include "platform/linux/files/small_files.h"
#include "platform/linux/files/xdg_folders.h"
#include "platform/linux/latin_start/fcitx_latin_start.h"
#include "platform/linux/latin_start/ibus_latin_start.h"

#include <QProcess>
#include <QStandardPaths>
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <system_error>

namespace hopsel {

namespace {

constexpr std::string_view ibusPrefix = "ibus:", fcitxPrefix = "fcitx:";
/// Whose settings are files.
constexpr std::string_view ofFiles[] = {fcitxPrefix, "ibus:mozc"};

const QString writer = QStringLiteral("dconf");

bool startsWith(std::string_view text, std::string_view prefix) {
    return text.substr(0, prefix.size()) == prefix;
}

std::string mozcFile() {
    constexpr const char* name = "ibus_config.textproto";
    const char* home = std::getenv("HOME");
    std::error_code ignored;
    // Where Mozc kept everything once; it does so still if the folder is there.
    const std::filesystem::path old = std::filesystem::path(home != nullptr ? home : "/") / ".mozc";
    const bool isOld = std::filesystem::is_directory(old, ignored);
    return readSmallFile((isOld ? old : xdgConfigHome() / "mozc") / name).value_or("");
}

std::string fcitxFile(std::string_view method) {
    return readSmallFile(xdgConfigHome() / "fcitx5" / "conf" / (std::string(method) + ".conf")).value_or("");
}

std::optional<IbusStartSetting> startSetting(std::string_view id) {
    return startsWith(id, ibusPrefix) ? ibusStartSetting(id.substr(ibusPrefix.size())) : std::nullopt;
}

SourceLimit limitNow(std::string_view id) {
    if (startsWith(id, fcitxPrefix)) return fcitxLatinStart(id.substr(fcitxPrefix.size()), fcitxFile);
    if (!startsWith(id, ibusPrefix)) return SourceLimit::none;
    const auto stored = [](const char* schema, const char* key) {
        return StoredSettings(schema).printed(key);
    };
    return ibusLatinStart(id.substr(ibusPrefix.size()), {stored, mozcFile});
}

} // namespace

LatinStart::LatinStart(std::shared_ptr<BusLink> sessionBus)
    // From whomever it comes: it is only the reason to read.
    : changes_(std::move(sessionBus), {"", "", "ca.desrt.dconf.Writer", "Notify", "sass", ""},
               [this](const QDBusMessage& signal) {
                   const std::string path = signal.arguments().constFirst().toString().toStdString();
                   if (isPathOfIbusEngines(path)) check();
               }) {}

SourceLimit LatinStart::limitOf(const std::string& id) {
    const SourceLimit limit = limitNow(id);
    told_[id] = limit;
    return limit;
}

bool LatinStart::canSetStart(const std::string& id) const {
    const auto setting = startSetting(id);
    return setting && StoredSettings(setting->schema).printed(setting->key) &&
           !QStandardPaths::findExecutable(writer).isEmpty();
}

void LatinStart::setStartsInOwnScript(const std::string& id, bool inOwnScript) {
    const auto setting = startSetting(id);
    if (!setting) return;
    StoredSettings settings(setting->schema);
    const auto now = settings.printed(setting->key);
    const auto path = settings.path(setting->key);
    if (!now || !path) return;
    std::string value = setting->value;
    if (inOwnScript) {
        before_.emplace(id, *now);
    } else {
        const auto before = before_.extract(id);
        if (!before) return;
        value = before.mapped();
    }
    // A process of its own: the storage's library would wait for the bus, and start threads. The storage
    // tells when it is written.
    QProcess::startDetached(writer, {"write", QString::fromStdString(*path), QString::fromStdString(value)});
}

bool LatinStart::needsCheck() const {
    return std::any_of(told_.begin(), told_.end(), [](const auto& entry) {
        return std::any_of(std::begin(ofFiles), std::end(ofFiles),
                           [&](std::string_view prefix) { return startsWith(entry.first, prefix); });
    });
}

void LatinStart::check() {
    const bool isOther = std::any_of(told_.begin(), told_.end(),
                                     [](const auto& entry) { return limitNow(entry.first) != entry.second; });
    if (!isOther) return;
    told_.clear(); // whoever is told asks again
    if (onChanged) onChanged();
}

} // namespace hopsel
