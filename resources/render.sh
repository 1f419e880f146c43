#!/bin/sh
# Renders the SVG sources into the PNG files that are compiled in or installed:
#   resources/render.sh [FOLDER]
# writes below FOLDER, laid out as this repository is; without FOLDER, into the repository itself.
# The results are committed, so a build needs no renderer; a test compares them with the sources.
set -eu

root=$(cd "$(dirname "$0")/.." && pwd)
out=${1:-$root}

# render SOURCE SIZE TARGET [OPTION...]: one square PNG. A subshell, so that its names are its own.
render() (
    source=$1
    size=$2
    target=$3
    shift 3
    mkdir -p "$(dirname "$out/$target")"
    rsvg-convert --width "$size" --height "$size" "$@" --output "$out/$target" "$root/$source"
)

# button SIZE NAME...: the button image and its twin for screens at 200 %.
button() {
    size=$1
    shift
    for name; do
        render "resources/svg/$name.svg" "$size" "resources/images/$name.png"
        render "resources/svg/$name.svg" $((2 * size)) "resources/images/$name@2x.png"
    done
}

button 24 Connect Disconnect button_cancel edit_add g-key2 chatbubbles7
button 32 UpArrow32 DnArrow32 LeftArrow32 RightArrow32

# The detailed drawing turns to mud below 48 pixels, so the small sizes have drawings of their own.
# 24 is 22 with a pixel of air around it, as the desktop's icon themes have it.
icons=packaging/icons
for size in 16 32; do
    render $icons/gx7100group-16.svg $size $icons/hicolor/${size}x$size/apps/gx7100group.png
done
render $icons/gx7100group-22.svg 22 $icons/hicolor/22x22/apps/gx7100group.png
render $icons/gx7100group-22.svg 22 $icons/hicolor/24x24/apps/gx7100group.png \
    --page-width 24 --page-height 24 --left 1 --top 1
for size in 48 64 128 256; do
    render $icons/hicolor/scalable/apps/gx7100group.svg $size \
        $icons/hicolor/${size}x$size/apps/gx7100group.png
done
