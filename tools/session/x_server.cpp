#include "session/x_server.h"

#include "session/x_display.h"

#include <csignal>
#include <cstdlib>
#include <stdexcept>

namespace hopsel::session {

namespace {

constexpr auto startTimeout = std::chrono::seconds(20);

constexpr const char* plainConfiguration = R"(<?xml version="1.0" encoding="UTF-8"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <focus><focusNew>yes</focusNew><followMouse>no</followMouse></focus>
  <desktops><number>1</number><popupTime>0</popupTime></desktops>
  <keyboard>
    <keybind key="A-Tab"><action name="NextWindow"><dialog>none</dialog></action></keybind>
  </keyboard>
  <mouse>
    <context name="Client">
      <mousebind button="Left" action="Press"><action name="Focus"/><action name="Raise"/></mousebind>
    </context>
  </mouse>
</openbox_config>
)";

} // namespace

XServer::XServer(const std::vector<std::string>& extraArguments) {
    ChildProcess::Options options;
    options.program = "Xvfb";
    options.package = "xvfb";
    options.arguments = {"-displayfd", "1", "-noreset", "-nolisten", "tcp", "-screen", "0", "1024x768x24"};
    options.arguments.insert(options.arguments.end(), extraArguments.begin(), extraArguments.end());
    options.output = ChildProcess::Output::capture;
    options.errors = ChildProcess::Output::discard; // the keymap compiler's warnings at every layout change
    server_ = std::make_unique<ChildProcess>(options);

    const auto number = server_->waitForLine("", startTimeout);
    if (!number || number->empty()) throw std::runtime_error("Xvfb did not start");
    display_ = ":" + *number;
    if (const char* previous = std::getenv("DISPLAY")) previousDisplay_ = previous;
    setenv("DISPLAY", display_.c_str(), 1);
}

XServer::~XServer() {
    panel_.reset();
    windowManager_.reset();
    server_.reset();
    if (previousDisplay_) {
        setenv("DISPLAY", previousDisplay_->c_str(), 1);
    } else {
        unsetenv("DISPLAY");
    }
}

void XServer::kill() {
    server_->kill(SIGKILL);
    server_->terminate(); // waits until it has gone
    setenv("DISPLAY", ":gone", 1);
}

void XServer::startWindowManager(const std::string& rcXml) {
    configuration_ = std::make_unique<TemporaryFolder>();
    const auto rc = configuration_->write("rc.xml", rcXml.empty() ? plainConfiguration : rcXml);
    ChildProcess::Options options;
    options.program = "openbox";
    options.package = "openbox";
    options.arguments = {"--sm-disable", "--config-file", rc.string(), "--startup", "echo started"};
    options.environment = {{"HOME", configuration_->path().string()},
                           {"XDG_CACHE_HOME", configuration_->path().string()},
                           {"XDG_CONFIG_HOME", configuration_->path().string()},
                           {"XDG_DATA_HOME", configuration_->path().string()}};
    options.output = ChildProcess::Output::capture;
    options.errors = ChildProcess::Output::discard;
    windowManager_ = std::make_unique<ChildProcess>(options);

    // Its properties on the root window come too early: a window that is mapped between them and the end of
    // its start stays unmapped for ever.
    XDisplay display;
    if (!windowManager_->waitForLine("started", startTimeout) ||
        display.numberProperty(display.root(), "_NET_SUPPORTING_WM_CHECK") == 0) {
        throw std::runtime_error("openbox did not start");
    }
}

void XServer::startPanel() {
    ChildProcess::Options options;
    options.program = "trayer";
    options.package = "trayer";
    options.arguments = {"--edge", "top", "--align", "right", "--widthtype", "request", "--height", "24"};
    options.errors = ChildProcess::Output::discard;
    XDisplay display;
    const xcb_atom_t tray = display.atom("_NET_SYSTEM_TRAY_S0");
    const xcb_atom_t manager = display.atom("MANAGER");
    // It tells the root window of itself once it has the tray.
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(display.get(), display.root(), XCB_CW_EVENT_MASK, &mask);
    display.roundTrip();
    panel_ = std::make_unique<ChildProcess>(options);
    bool isThere = false;
    const auto look = [&](const xcb_generic_event_t& event) {
        if (typeOf(event) != XCB_CLIENT_MESSAGE) return;
        const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
        isThere = isThere || (message.type == manager && message.data.data32[1] == tray);
    };
    if (!display.waitFor(look, [&] { return isThere; }, startTimeout))
        throw std::runtime_error("trayer did not start");
}

} // namespace hopsel::session
