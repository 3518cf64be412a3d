#!/usr/bin/env bash
# Draws the program's icon in every size, after its SVG has changed.
set -euo pipefail
cd "$(dirname "$0")/../packaging/icons"

for size in 16 22 24 32 48 64 128 256 512; do
    rsvg-convert --width "$size" --height "$size" worklog-remote.svg --output "worklog-remote-$size.png"
done
