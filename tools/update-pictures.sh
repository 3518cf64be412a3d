#!/usr/bin/env bash
# Takes the pictures of the documents anew: plays the tour, cuts the windows out of the display.
set -euo pipefail
cd "$(dirname "$0")/.."

tools/build.sh release tour WorklogRemote exchange_client help_file worklogprobe
album=$(mktemp -d)
trap 'rm -rf "$album"' EXIT
build/release/tests/tour "$album"

keep() {
    convert "$album/$1.png" -bordercolor black -border 1 -trim +repage +dither -colors 255 "docs/pictures/$2.png"
}
keep "5 An entry of the list in the editor" main-window
keep "6 Customers to choose from" lookup
keep "7 The transaction filter" transaction-filter
keep "8 The hours of each day" hours-summary
keep "10 What a synchronisation does" synchronisation-options
keep "11 Help beside the window" help
