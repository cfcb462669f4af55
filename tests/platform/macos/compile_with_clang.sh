#!/usr/bin/env bash
# compile_with_clang.sh <clang++> <folder or file> [flag...]: checks the folder's C++ and Objective-C++ as on macOS,
# from the project's root. Flags are for what the folder needs besides.
set -euo pipefail
clang=$1
folder=$2
shift 2
warnings=(-Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wnon-virtual-dtor -Wold-style-cast
    -Woverloaded-virtual -Werror)
check() {
    "$clang" -std=c++20 "${warnings[@]}" -I. -isystem platform/macos/declarations -fsyntax-only "$@"
}
shopt -s nullglob
sources=("$folder"/*.cpp)
objective=("$folder"/*.mm)
[ ! -f "$folder" ] || objective=("$folder")
[ $((${#sources[@]} + ${#objective[@]})) -gt 0 ] || { echo "no sources in $folder" >&2; exit 1; }
[ ${#sources[@]} -eq 0 ] || check "$@" "${sources[@]}"
[ ${#objective[@]} -eq 0 ] ||
    check "$@" -x objective-c++ -fobjc-runtime=macosx-13.0 -fobjc-arc -fblocks -Wno-old-style-cast "${objective[@]}"
