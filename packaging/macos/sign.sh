#!/bin/bash
# sign.sh <identity> <entitlements> <bundle>: signs everything in the bundle from the inside out.
set -euo pipefail
identity=$1 entitlements=$2 bundle=$3
options=(--force --sign "$identity")
# What other machines are to accept has to be hardened and to carry a time stamp. A signature for this machine alone
# cannot be: hardened, the program would refuse libraries that name no maker.
[ "$identity" = - ] || options+=(--options runtime --timestamp)

find "$bundle/Contents" -type f -name '*.dylib' -print0 | xargs -0 -n 1 codesign "${options[@]}"
find "$bundle/Contents" -type d -name '*.framework' -prune -print0 | xargs -0 -n 1 codesign "${options[@]}"
codesign "${options[@]}" --entitlements "$entitlements" "$bundle"
codesign --verify --strict --deep "$bundle"
