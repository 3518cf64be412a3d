#!/usr/bin/env bash
# Runs a command that starts Windows programs: tools/with-wine.sh <command> [argument...]
# They get a Windows of their own (a Wine prefix) and a virtual display with a window manager, and
# both are gone afterwards.
set -euo pipefail

WINEPREFIX=$(mktemp -d)
export WINEPREFIX
export WINEDEBUG=-all # Wine's own remarks
export LC_ALL=C.UTF-8 # Wine writes the names of files in the locale's letters
# Wine would offer to download parts that no program of ours uses, and would put what a setup
# program lays into the Start menu into this user's own menu.
export WINEDLLOVERRIDES='mscoree,mshtml,winemenubuilder.exe='

finish() {
    wineserver --kill 2>/dev/null || true
    wineserver --wait 2>/dev/null || true
    kill "${pids[@]}" 2>/dev/null || true
    rm -rf "$WINEPREFIX" || true
}
pids=()
trap finish EXIT

# Xvfb finds a free display number itself and prints it.
coproc display { exec Xvfb -displayfd 1 -screen 0 1920x1200x24 -nolisten tcp 2>/dev/null; }
pids+=("$display_PID")
read -r number <&"${display[0]}"
export DISPLAY=:$number
openbox >/dev/null 2>&1 &
pids+=($!)

wine wineboot --init >/dev/null 2>&1
# The fonts that Windows' windows name, where Wine looks for them.
ln -s /usr/share/wine/fonts/*.ttf "$WINEPREFIX/drive_c/windows/Fonts"
wine winecfg /v win10 >/dev/null 2>&1
"$@"
