# Sourced by ./start: i3 with its own bar, and no other key bound than those that move the focus.
export XDG_CURRENT_DESKTOP=i3 DESKTOP_SESSION=i3

start_desktop() {
    mkdir -p "$XDG_CONFIG_HOME/i3"
    printf '%s\n' '# i3 config file (v4)' 'bindsym Mod1+Tab focus next' 'bar {' '    position top' '}' >"$XDG_CONFIG_HOME/i3/config"
    start_part i3
}
