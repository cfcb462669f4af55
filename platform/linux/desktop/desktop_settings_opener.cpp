#include "platform/linux/desktop/desktop_settings_opener.h"

#include "platform/linux/desktop/program_launcher.h"
#include "platform/linux/desktop/way_out_message.h"

#include <QCoreApplication>
#include <QUrl>

namespace hopsel {

namespace fs = std::filesystem;

namespace {

enum class Place { shortcuts, autostart, sources };

struct Program {
    const char* desktop; ///< as it stands in XDG_CURRENT_DESKTOP
    Place place;
    const char* command;
};

// Several for one desktop: the first that is installed, as names changed between versions.
constexpr Program programs[] = {
    {"GNOME", Place::shortcuts, "gnome-control-center keyboard"},
    {"GNOME", Place::autostart, "gnome-session-properties"},
    {"GNOME", Place::autostart, "gnome-tweaks"},
    {"Unity", Place::shortcuts, "unity-control-center keyboard"},
    {"Unity", Place::autostart, "gnome-session-properties"},
    {"Budgie", Place::shortcuts, "budgie-control-center keyboard"},
    {"Budgie", Place::autostart, "budgie-desktop-settings"},
    {"KDE", Place::shortcuts, "systemsettings kcm_keys"},
    {"KDE", Place::shortcuts, "systemsettings5 kcm_keys"},
    {"KDE", Place::autostart, "systemsettings kcm_autostart"},
    {"KDE", Place::autostart, "systemsettings5 kcm_autostart"},
    {"XFCE", Place::shortcuts, "xfce4-keyboard-settings"},
    {"XFCE", Place::autostart, "xfce4-session-settings"},
    {"MATE", Place::shortcuts, "mate-keybinding-properties"},
    {"MATE", Place::autostart, "mate-session-properties"},
    {"X-Cinnamon", Place::shortcuts, "cinnamon-settings keyboard"},
    {"X-Cinnamon", Place::autostart, "cinnamon-settings startup"},
    {"LXQt", Place::shortcuts, "lxqt-config-globalkeyshortcuts"},
    {"LXQt", Place::autostart, "lxqt-config-session"},
    {"LXDE", Place::autostart, "lxsession-edit"},
    {"GNOME", Place::sources, "gnome-control-center keyboard"},
    {"Unity", Place::sources, "unity-control-center region"},
    {"Budgie", Place::sources, "budgie-control-center keyboard"},
    {"KDE", Place::sources, "systemsettings kcm_keyboard"},
    {"KDE", Place::sources, "systemsettings5 kcm_keyboard"},
    {"XFCE", Place::sources, "xfce4-keyboard-settings"},
    {"MATE", Place::sources, "mate-keyboard-properties"},
    {"X-Cinnamon", Place::sources, "cinnamon-settings keyboard"},
    {"LXQt", Place::sources, "lxqt-config-input"},
};

bool openSettings(Place place) {
    // The session's own name first, then those it is derived from ("ubuntu:GNOME").
    for (const QString& desktop : qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(':')) {
        for (const Program& program : programs) {
            if (program.place != place || desktop.compare(program.desktop, Qt::CaseInsensitive) != 0)
                continue;
            QStringList words = QString(program.command).split(' ');
            const QString name = words.takeFirst();
            if (startProgram(name, words)) return true;
        }
    }
    return false;
}

} // namespace

fs::path helpPage() {
    const fs::path folder = QCoreApplication::applicationDirPath().toStdString();
    for (const fs::path& page : {folder / ".." / "share" / "doc" / "hopsel" / "permissions.html",
                                 folder / "docs" / "permissions.html"}) {
        std::error_code error;
        if (fs::is_regular_file(page, error)) return page.lexically_normal();
    }
    return {};
}

DesktopSettingsOpener::DesktopSettingsOpener(std::shared_ptr<Permissions> permissions, fs::path helpPage,
                                             Log& log, SourcesProgram sourcesProgram, Remedy remedy)
    : permissions_(std::move(permissions)),
      helpPage_(std::move(helpPage)),
      log_(log),
      sourcesProgram_(std::move(sourcesProgram)),
      remedy_(std::move(remedy)) {}

void DesktopSettingsOpener::openInputMonitoring() {
    const auto otherwise = [this](const WayOut& way) {
        const auto help = [this] { openHelp("listening"); };
        if (!way.isSaid()) return help();
        message_ = wayOutMessage(way, help);
    };
    remedy_ ? remedy_(&context_, otherwise) : otherwise({});
}

void DesktopSettingsOpener::openAccessibility() {
    if (!openSettings(Place::shortcuts)) openHelp("combinations");
}

void DesktopSettingsOpener::openLoginItems() {
    if (!openSettings(Place::autostart)) openHelp("login");
}

void DesktopSettingsOpener::openInputSources() {
    const char* program = sourcesProgram_ ? sourcesProgram_() : nullptr;
    if (program != nullptr && startProgram(program, {})) return;
    if (!openSettings(Place::sources)) openHelp("sources");
}

void DesktopSettingsOpener::openHelp(const char* section) {
    if (helpPage_.empty()) {
        log_.write(Log::Level::error, "Settings", "the help page permissions.html is not installed");
        return;
    }
    QUrl page = QUrl::fromLocalFile(QString::fromStdString(helpPage_.string()));
    page.setFragment(section);
    if (!openWithDesktop(page.toString(QUrl::FullyEncoded)))
        log_.write(Log::Level::error, "Settings",
                   "no program to open it with; please read " + helpPage_.string());
}

} // namespace hopsel
