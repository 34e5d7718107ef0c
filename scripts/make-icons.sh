#!/usr/bin/env bash
# Draws res/icons/*.ico from res/svg/*.svg: 16 to 256 pixels, 32 bits with alpha.
#
#   scripts/make-icons.sh
#
# The icons are committed, because a Windows developer has no rsvg-convert: run this after changing a drawing.
. "$(dirname "$0")/lib.sh"
expect_end "$@"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for drawing in "$ORV_ROOT"/res/svg/*.svg; do
    number=$(basename "$drawing" .svg)
    images=()
    for size in 16 20 24 32 40 48 64 96 128 256; do
        rsvg-convert -w "$size" -h "$size" "$drawing" -o "$work/$number-$size.png"
        # The large ones stay PNGs inside the icon: as bitmaps they would be a fifth of the module. The small ones,
        # of which menus and lists are drawn, are bitmaps: nothing is to be decompressed for a right-click.
        if [ "$size" -ge 64 ]; then
            images+=(--raw="$work/$number-$size.png")
        else
            images+=("$work/$number-$size.png")
        fi
    done
    icotool --create --output="$ORV_ROOT/res/icons/$number.ico" "${images[@]}"
    say "res/icons/$number.ico"
done
