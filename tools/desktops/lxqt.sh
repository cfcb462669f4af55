# Sourced by ./start: LXQt's panel over openbox.
export XDG_CURRENT_DESKTOP=LXQt DESKTOP_SESSION=lxqt

start_desktop() {
    start_part openbox
    start_part lxqt-panel
}
