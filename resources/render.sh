#!/bin/sh
# Renders the SVG sources into the PNG files that are compiled in or installed:
#   resources/render.sh [FOLDER]
# writes below FOLDER, laid out as this repository is; without FOLDER, into the repository itself.
# The results are committed, so a build needs no renderer; a test compares them with the sources.
set -eu

root=$(cd "$(dirname "$0")/.." && pwd)
out=${1:-$root}

# render SOURCE SIZE TARGET: one square PNG.
render() {
    mkdir -p "$(dirname "$out/$3")"
    rsvg-convert --width "$2" --height "$2" --output "$out/$3" "$root/$1"
}

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

# The detailed drawing turns to mud below 48 pixels; the small one keeps what is left legible.
icons=packaging/icons
for size in 16 22 24 32; do
    render $icons/gx7100group-small.svg $size $icons/hicolor/${size}x$size/apps/gx7100group.png
done
for size in 48 64 128 256; do
    render $icons/hicolor/scalable/apps/gx7100group.svg $size \
        $icons/hicolor/${size}x$size/apps/gx7100group.png
done
