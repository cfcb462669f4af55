# Sourced by ./start: LXQt's panel over openbox.
# Its own defaults lie where data lies.
export XDG_CURRENT_DESKTOP=LXQt DESKTOP_SESSION=lxqt XDG_CONFIG_DIRS=/etc/xdg:/usr/share

start_desktop() {
    start_part openbox
    start_part lxqt-panel
}
