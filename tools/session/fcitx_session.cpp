#include "session/fcitx_session.h"

#include <csignal>

namespace hopsel::session {

FcitxSession::FcitxSession() {
    home_.configure("fcitx5/profile", "[Groups/0]\nName=Default\nDefault Layout=us\nDefaultIM=hangul\n"
                                      "[Groups/0/Items/0]\nName=keyboard-us\n"
                                      "[Groups/0/Items/1]\nName=hangul\n[GroupOrder]\n0=Default\n");
}

void FcitxSession::startDaemon() {
    ChildProcess::Options options;
    options.program = options.package = "fcitx5";
    options.errors = ChildProcess::Output::discard;
    daemon_ = std::make_unique<ChildProcess>(options);
}

void FcitxSession::killDaemon() {
    daemon_->kill(SIGKILL);
    daemon_->waitForExit(std::chrono::seconds(5));
}

} // namespace hopsel::session
