// Whether there is a compositor to be reached. Stateless; needs no application object.
#pragma once

namespace hopsel::wayland_display {

/// A socket where WAYLAND_DISPLAY, or else the usual name, says that one listens.
bool isThere();

} // namespace hopsel::wayland_display
