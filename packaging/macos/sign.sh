#!/bin/bash
# sign.sh <identity> <bundle>: signs everything in the bundle from the inside out. Asks for no entitlements: outside of
# the sandbox, which a program enters only if it asks to, filtering and posting keys are the user's to permit.
set -euo pipefail
identity=$1 bundle=$2
options=(--force --sign "$identity")
# What other machines are to accept has to be hardened and to carry a time stamp. Any other signature cannot be: hardened,
# the program would refuse libraries that name no team.
[[ $identity != "Developer ID Application:"* ]] || options+=(--options runtime --timestamp)

find "$bundle/Contents" -type f -name '*.dylib' -exec codesign "${options[@]}" {} \;
find "$bundle/Contents" -type d -name '*.framework' -prune -exec codesign "${options[@]}" {} \;
codesign "${options[@]}" "$bundle"
codesign --verify --strict --deep "$bundle"
