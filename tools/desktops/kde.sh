# Sourced by ./start: KDE's window manager, its daemon with the keyboard module, and its panel.
export XDG_CURRENT_DESKTOP=KDE DESKTOP_SESSION=plasma KDE_FULL_SESSION=true KDE_SESSION_VERSION=5 KWIN_COMPOSE=N

start_desktop() {
    printf '[Layout]\nUse=true\nLayoutList=us,ru\nVariantList=,\nResetOldOptions=true\n' >"$XDG_CONFIG_HOME/kxkbrc"
    # No welcome window, no search through the files.
    printf '[General]\nShouldShow=false\n' >"$XDG_CONFIG_HOME/plasma-welcomerc"
    printf '[Basic Settings]\nIndexing-Enabled=false\n' >"$XDG_CONFIG_HOME/baloofilerc"
    start_part kded5
    start_part kwin_x11
    start_part plasmashell --no-respawn
}
