#!/usr/bin/env bash
# Draws the program's icon in every size, after its SVG has changed; and the picture beside the
# texts of the setup program for Windows.
set -euo pipefail
cd "$(dirname "$0")/../packaging/icons"

for size in 16 22 24 32 48 64 128 256 512; do
    rsvg-convert --width "$size" --height "$size" worklog-remote.svg --output "worklog-remote-$size.png"
done

drawn=$(mktemp -d)
trap 'rm -rf "$drawn"' EXIT
sizes=()
for size in 16 20 24 32 40 48 64 128 256; do
    rsvg-convert --width "$size" --height "$size" worklog-remote.svg --output "$drawn/$size.png"
    sizes+=("$drawn/$size.png")
done
# The largest stays packed, the others do not: older programs that show icons read only such.
convert "${sizes[@]}" worklog-remote.ico

# Twice the size that Windows shows at 100 %, so that it is sharp at 200 %.
rsvg-convert --width 192 --height 192 worklog-remote.svg --output "$drawn/large.png"
convert -size 328x628 gradient:'#eaf3f9-#b4d0e3' \
    "$drawn/large.png" -gravity north -geometry +0+120 -composite \
    -type TrueColor BMP3:../windows/setup.bmp
