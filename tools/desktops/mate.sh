# Sourced by ./start: MATE's window manager, settings daemon and panel.
export XDG_CURRENT_DESKTOP=MATE DESKTOP_SESSION=mate

start_desktop() {
    start_part mate-settings-daemon
    start_part marco --no-composite
    start_part mate-panel
}
