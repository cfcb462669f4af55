#include "session/gnome_session.h"

#include <cstdlib>

namespace hopsel::session {

namespace {

ChildProcess::Options options(const char* program, const std::vector<std::string>& arguments,
                              const char* package) {
    ChildProcess::Options options;
    options.program = program;
    options.arguments = arguments;
    options.package = package;
    options.output = ChildProcess::Output::discard;
    // What of a whole desktop is not there; with the variable, what the shell says of it.
    if (std::getenv("HOPSEL_SHOW_SHELL_LOG") == nullptr) options.errors = ChildProcess::Output::discard;
    return options;
}

} // namespace

GnomeSession::GnomeSession(const std::string& dataFolder, const std::string& sources, Kind kind) {
    IbusSession::set("/org/gnome/shell/enabled-extensions",
                     "['hopsel@app.hopsel.Hopsel', 'hopsel-43@app.hopsel.Hopsel']");
    IbusSession::set("/org/gnome/shell/welcome-dialog-last-shown-version", "'99'");
    IbusSession::set("/org/gnome/desktop/interface/enable-animations", "false");
    // A key whose release is late on a loaded machine is pressed once all the same.
    IbusSession::set("/org/gnome/desktop/peripherals/keyboard/repeat", "false");
    IbusSession::set("/org/gnome/desktop/input-sources/sources", sources);
    IbusSession::setHangulStart("hangul");
    logind_ = std::make_unique<ChildProcess>(options(
        "/usr/bin/python3", {"-m", "dbusmock", "--system", "--template", "logind"}, "python3-dbusmock"));
    runProgram(
        options("gdbus", {"wait", "--system", "--timeout", "20", "org.freedesktop.login1"}, "libglib2.0-bin"),
        std::chrono::seconds(25));
    const bool isWayland = kind == Kind::wayland;
    auto shell = options("gnome-shell",
                         isWayland ? std::vector<std::string>{"--headless", "--virtual-monitor", "1280x720",
                                                              "--wayland", "--no-x11", "--unsafe-mode"}
                                   : std::vector<std::string>{"--x11", "--unsafe-mode"},
                         "gnome-shell");
    shell.environment = {{"XDG_DATA_DIRS", dataFolder + ":/usr/local/share:/usr/share"},
                         {"XDG_SESSION_TYPE", isWayland ? "wayland" : "x11"},
                         {"XDG_CURRENT_DESKTOP", "GNOME"},
                         {"LIBGL_ALWAYS_SOFTWARE", "1"},
                         {"LC_ALL", "C.UTF-8"},
                         {"GTK_IM_MODULE", std::nullopt},
                         {"WAYLAND_DISPLAY", std::nullopt}};
    if (isWayland) shell.environment["DISPLAY"] = std::nullopt;
    shell_ = std::make_unique<ChildProcess>(shell);
    if (isWayland) setenv("WAYLAND_DISPLAY", display, 1);
}

GnomeSession::~GnomeSession() { unsetenv("WAYLAND_DISPLAY"); }

} // namespace hopsel::session
