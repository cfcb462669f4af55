#!/bin/bash
# release.sh [identity] [profile]: makes the disk image of Hopsel, from sources to what other people get.
#
# Without arguments it is signed for this machine alone ("ad hoc"). With an identity of the keychain it is signed by it; a
# "Developer ID Application: ..." together with a profile of notarytool is notarised as well. The image lies in
# build-release then. CMake finds the toolkit through CMAKE_PREFIX_PATH, or through Homebrew.
set -euo pipefail
identity=${1:--} profile=${2:-}
cd "$(dirname "$0")/../.."
build=$PWD/build-release
[ "$(uname -s)" = Darwin ] || { echo "The program for macOS is made on a Mac." >&2; exit 1; }
if [ -z "${CMAKE_PREFIX_PATH:-}" ] && command -v brew >/dev/null; then
    CMAKE_PREFIX_PATH=$(brew --prefix qt):$(brew --prefix)
    export CMAKE_PREFIX_PATH
fi

# The program runs where its toolkit does, and says so: Homebrew builds for the system that it is installed on.
oldest=13.0
PATH=${CMAKE_PREFIX_PATH:+${CMAKE_PREFIX_PATH//[;:]//bin:}/bin:}$PATH
for tool in qtpaths6 qtpaths; do
    command -v $tool >/dev/null || continue
    needed=$(packaging/macos/check_bundle.py --minimum "$($tool --query QT_INSTALL_LIBS)/QtCore.framework/QtCore")
    oldest=$(printf '%s\n' "$oldest" "$needed" | sort -t . -k 1,1n -k 2,2n | tail -n 1)
    break
done
echo "For macOS $oldest and later"

cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_OSX_DEPLOYMENT_TARGET="$oldest" \
    -DHOPSEL_SIGNING_IDENTITY="$identity"
cmake --build "$build"

# Installing deploys the toolkit, checks the bundle and signs it. Only what is signed is tried.
rm -rf "$build/installed" "$build/pictures"
cmake --install "$build" --prefix "$build/installed"
"$build/installed/Hopsel.app/Contents/MacOS/Hopsel" --render-ui "$build/pictures"
[ "$(find "$build/pictures" -name '*.png' | wc -l)" -ge 32 ] || { echo "It did not draw its windows." >&2; exit 1; }

rm -f "$build"/Hopsel-*.dmg
(cd "$build" && cpack)
image=$(ls "$build"/Hopsel-*.dmg)
if [ "$identity" != - ]; then codesign --force --sign "$identity" "$image"; fi
if [ -n "$profile" ]; then
    xcrun notarytool submit "$image" --keychain-profile "$profile" --wait
    xcrun stapler staple "$image"
    spctl --assess --type open --context context:primary-signature -v "$image"
fi
echo "$image"
