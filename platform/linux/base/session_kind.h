// Which kind of session this is: asked of the environment, which does not change while the program runs.
// Stateless.
#pragma once

namespace hopsel::session_kind {

/// The X server's layouts only follow those of the compositor, and its keys are those of X11 windows alone.
bool isWayland();
/// GNOME's shell is the desktop.
bool isGnome();
/// It is the compositor, too.
bool isGnomeWayland();
bool isKde();
/// There is an X server to be asked, if only one for the X11 programs of a Wayland session.
bool hasDisplay();

} // namespace hopsel::session_kind
