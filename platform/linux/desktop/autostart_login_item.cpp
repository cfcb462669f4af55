#include "platform/linux/desktop/autostart_login_item.h"

#include "platform/linux/files/desktop_entry.h"
#include "platform/linux/files/small_files.h"
#include "platform/linux/files/xdg_folders.h"
#include "platform/posix/posix_file_storage.h"

#include <QCoreApplication>
#include <QStandardPaths>
#include <fcntl.h>
#include <unistd.h>

namespace hopsel {

namespace fs = std::filesystem;

namespace {

constexpr const char* hidden = "Hidden";                         // by the standard
constexpr const char* gnomeSwitch = "X-GNOME-Autostart-enabled"; // written by the settings of GNOME and MATE

/// So that nothing pops up at login.
constexpr const char* background = "--background";

bool startsSomething(const DesktopEntry& entry) {
    const std::string program = entry.program();
    return !program.empty() && !QStandardPaths::findExecutable(QString::fromStdString(program)).isEmpty();
}

bool isOn(const DesktopEntry& entry) { return !entry.flag(hidden, false) && entry.flag(gnomeSwitch, true); }

std::optional<DesktopEntry> read(const fs::path& file) {
    const auto text = readSmallFile(file);
    return text ? DesktopEntry::parse(*text) : std::nullopt;
}

} // namespace

AutostartLoginItem::AutostartLoginItem()
    : AutostartLoginItem(xdgConfigHome() / "autostart",
                         QCoreApplication::applicationFilePath().toStdString()) {}

AutostartLoginItem::AutostartLoginItem(fs::path folder, fs::path program)
    : folder_(std::move(folder)), entry_(folder_ / "hopsel.desktop"), program_(std::move(program)) {}

LoginItemStatus AutostartLoginItem::status() const {
    if (!canBeWritten()) return LoginItemStatus::unavailable;
    const auto entry = read(entry_);
    return entry && isOn(*entry) && startsSomething(*entry) ? LoginItemStatus::enabled
                                                            : LoginItemStatus::disabled;
}

bool AutostartLoginItem::canBeWritten() const {
    std::error_code error;
    const fs::file_type type = fs::status(entry_, error).type();
    if (type != fs::file_type::not_found && type != fs::file_type::regular) return false;
    fs::path folder = folder_; // or what it would have to be made in
    while (fs::status(folder, error).type() == fs::file_type::not_found && folder.has_relative_path())
        folder = folder.parent_path();
    return fs::is_directory(folder, error) &&
           ::faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

void AutostartLoginItem::setEnabled(bool on) { on ? enable() : disable(); }

void AutostartLoginItem::enable() {
    PosixFileStorage storage{{}};
    storage.createDirectories(folder_);
    auto entry = read(entry_);
    if (!entry) {
        if (storage.exists(entry_)) copyAside(entry_);
        storage.writeAtomically(entry_, ownText());
        return;
    }
    if (isOn(*entry) && startsSomething(*entry)) return;
    if (entry->has(hidden)) entry->setFlag(hidden, false);
    if (entry->has(gnomeSwitch)) entry->setFlag(gnomeSwitch, true);
    // Left behind by a copy of this program that lived elsewhere, or nothing but a switch.
    if (!startsSomething(*entry)) entry->setProgram(program_, background);
    if (!entry->has("Type")) entry->setText("Type", "Application");
    if (!entry->has("Name")) entry->setText("Name", "Hopsel");
    storage.writeAtomically(entry_, entry->toText());
}

void AutostartLoginItem::disable() {
    if (readSmallFile(entry_) == ownText()) {
        fs::remove(entry_);
        return;
    }
    auto entry = read(entry_);
    if (!entry || !isOn(*entry)) return;
    entry->setFlag(hidden, true);
    PosixFileStorage({}).writeAtomically(entry_, entry->toText());
}

std::string AutostartLoginItem::ownText() const {
    DesktopEntry entry;
    entry.setText("Type", "Application");
    entry.setText("Name", "Hopsel");
    entry.setText("Comment", "Switches the keyboard input source with a trigger key");
    entry.setText("Comment[ko]", "전환 키로 입력 소스를 바꿉니다");
    entry.setProgram(program_, background);
    entry.setFlag("Terminal", false);
    return entry.toText();
}

} // namespace hopsel
