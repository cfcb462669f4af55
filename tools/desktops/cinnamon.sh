# Sourced by ./start: Cinnamon, which is window manager and panel in one.
export XDG_CURRENT_DESKTOP=X-Cinnamon DESKTOP_SESSION=cinnamon

start_desktop() {
    start_part cinnamon
}
