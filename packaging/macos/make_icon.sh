#!/bin/bash
# make_icon.sh <draw_icon tool> <drawing.svg> <out.icns>: the program's icon in all the sizes that the system shows.
set -euo pipefail
tool=$1 drawing=$2 out=$3
set_folder=${out%.icns}.iconset
rm -rf "$set_folder"
mkdir -p "$set_folder"
for points in 16 32 128 256 512; do
    "$tool" "$drawing" "$points" "$set_folder/icon_${points}x${points}.png"
    "$tool" "$drawing" $((points * 2)) "$set_folder/icon_${points}x${points}@2x.png"
done
iconutil --convert icns --output "$out" "$set_folder"
