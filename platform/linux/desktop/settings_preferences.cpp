#include "platform/linux/desktop/settings_preferences.h"

#include "platform/linux/files/small_files.h"
#include "platform/linux/files/xdg_folders.h"
#include "platform/posix/posix_file_storage.h"

#include <QGuiApplication>
#include <QLockFile>
#include <QSettings>
#include <glib.h>
#include <sstream>
#include <stdexcept>

namespace hopsel {

namespace fs = std::filesystem;

namespace {

enum class Condition {
    usable,
    damaged,
    unreachable, ///< no regular file, or not ours to read: left alone
};

/// QSettings takes what it can of any text and drops the rest without a word at the next write.
bool isIni(const std::string& text) {
    if (g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr) == FALSE) return false;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const auto first = line.find_first_not_of(" \t\r");
        if (first == std::string::npos || line[first] == ';' || line[first] == '#') continue;
        if (line.find(line[first] == '[' ? ']' : '=') == std::string::npos) return false;
    }
    return true;
}

Condition conditionOf(const fs::path& file) {
    std::error_code error;
    const fs::file_type type = fs::status(file, error).type();
    if (type == fs::file_type::not_found) return Condition::usable;
    if (type != fs::file_type::regular) return Condition::unreachable;
    if (const auto text = readSmallFile(file)) return isIni(*text) ? Condition::usable : Condition::damaged;
    return fs::file_size(file, error) > maxSmallFile ? Condition::damaged : Condition::unreachable;
}

QString qtPath(const fs::path& path) { return QString::fromStdString(path.string()); }

} // namespace

SettingsPreferences::SettingsPreferences(Log& log, fs::path file) : log_(log), file_(std::move(file)) {}

fs::path SettingsPreferences::defaultFile() { return xdgConfigHome() / "hopsel" / "preferences.ini"; }

std::optional<bool> SettingsPreferences::indicatesSwitches() const {
    if (QGuiApplication::platformName() != QLatin1String("xcb")) return std::nullopt;
    return read("indicatesSwitches", false);
}

bool SettingsPreferences::read(const char* key, bool byDefault) const {
    if (const auto found = unsaved_.find(key); found != unsaved_.end()) return found->second;
    if (conditionOf(file_) != Condition::usable) return byDefault;
    const QString value = QSettings(qtPath(file_), QSettings::IniFormat).value(key).toString();
    if (value == "true" || value == "1") return true;
    if (value == "false" || value == "0") return false;
    return byDefault;
}

void SettingsPreferences::write(const char* key, bool on) {
    unsaved_[key] = on;
    try {
        store();
        unsaved_.clear();
        isRefused_ = false;
    } catch (const std::runtime_error& error) {
        if (!isRefused_)
            log_.write(Log::Level::error, "Preferences", std::string("not saved: ") + error.what());
        isRefused_ = true;
    }
}

void SettingsPreferences::store() {
    const Condition condition = conditionOf(file_);
    if (condition == Condition::unreachable)
        throw std::runtime_error(file_.string() + ": not a file that can be read");
    if (condition == Condition::damaged) setAside();
    // QSettings would wait for whoever is writing, with the whole program.
    QLockFile writing(qtPath(file_) + ".lock");
    if (!writing.tryLock(0) && writing.error() == QLockFile::LockFailedError)
        throw std::runtime_error(file_.string() + ": is being written by another program");
    writing.unlock();
    QSettings settings(qtPath(file_), QSettings::IniFormat);
    for (const auto& [key, on] : unsaved_) settings.setValue(key.c_str(), on);
    settings.sync();
    if (settings.status() == QSettings::AccessError)
        throw std::runtime_error(file_.string() + ": cannot be written");
}

void SettingsPreferences::setAside() const {
    const fs::path copy = copyAside(file_);
    // Emptied rather than removed: it may be a link to where the user keeps such files.
    PosixFileStorage({}).writeAtomically(file_, "");
    log_.write(Log::Level::error, "Preferences",
               file_.string() + ": damaged, starts afresh; a copy is at " + copy.string());
}

} // namespace hopsel
