# Sourced by ./run, ./test and ./bench: makes sure that Debian packages are installed. Debian 12, Ubuntu 24.04 or
# later have them new enough.
#
# On Debian and its relatives what is missing is installed with apt, through sudo when the user is not root. On
# other systems the packages are named, and it is up to the user.

packages_to_build="cmake ninja-build g++ pkg-config qt6-base-dev qt6-svg-dev libglib2.0-dev
  libxcb1-dev libxcb-xinput-dev libxcb-xtest0-dev
  libxcb-xkb-dev libxkbcommon-dev libxkbcommon-x11-dev libxkbregistry-dev libsystemd-dev libevdev-dev libwayland-dev nlohmann-json3-dev xkb-data qt6-translations-l10n"
packages_to_show="fonts-inter fonts-nanum"
packages_to_play="xvfb openbox trayer x11-xkb-utils xkb-data"
packages_to_test="systemd libgtest-dev libgmock-dev clang lld llvm libclang-rt-dev xauth dbus-daemon python3-dbusmock libglib2.0-bin
  xdg-utils desktop-file-utils appstream fonts-dejavu-core
  libatspi2.0-dev at-spi2-core sway qt6-wayland libxkbcommon-tools dconf-cli dconf-service dconf-gsettings-backend
  gsettings-desktop-schemas ibus ibus-hangul fcitx5 fcitx5-hangul fcitx5-frontend-gtk3 ibus-gtk3 python3-gi gir1.2-gtk-3.0 iso-codes"
packages_to_desktops="x11-utils xfwm4 xfce4-panel xfce4-settings xfconf xfce4-xkb-plugin
  qemu-system-x86 linux-image-amd64 polkitd pkexec util-linux kwin-wayland kwin-x11 kded5 plasma-workspace plasma-desktop gnome-shell gjs"
packages_to_check="git clang-format-19 clang-tidy-19"
packages_to_bench="libbenchmark-dev xcape dbus-daemon libglib2.0-bin dconf-cli dconf-service dconf-gsettings-backend ibus
  ibus-hangul fcitx5 fcitx5-hangul fcitx5-frontend-gtk3 ibus-gtk3 python3-gi gir1.2-gtk-3.0"

is_installed() { dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null | grep -qx installed; }

as_root() { if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi; }

name_packages() {
    echo "$1 Please see to it that what these Debian packages hold is installed:" >&2
    shift
    printf '  %s\n' "$@" >&2
}

# need_packages <name>...
need_packages() {
    if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
        name_packages "This system has no apt." "$@"
        return 0
    fi
    local missing=() name
    for name in "$@"; do is_installed "$name" || missing+=("$name"); done
    [ ${#missing[@]} -eq 0 ] && return 0
    if [ "$(id -u)" -ne 0 ] && ! command -v sudo >/dev/null; then
        name_packages "There is no sudo to install with." "${missing[@]}"
        return 1
    fi
    echo "Installing ${missing[*]}" >&2
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}" >/dev/null 2>&1 ||
        { as_root apt-get update >/dev/null &&
            as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}" >/dev/null; }
}
