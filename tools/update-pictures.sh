#!/usr/bin/env bash
# Takes the screenshots in the documents again: plays the tour on a light and a dark desktop, at 100
# and 200 %, and stores a screenshot of every window.
set -euo pipefail
cd "$(dirname "$0")/.."

tools/build.sh release tour WorklogRemote exchange_client help_file worklogprobe
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# A desktop's settings: the look of window frames, and the colors.
light_desktop() {
    window_frames Clearlooks "$2" "$1"
}

dark_desktop() {
    window_frames Onyx "$2" "$1"
    cat >"$1/kdeglobals" <<'END'
[Colors:Window]
BackgroundNormal=42,46,50
ForegroundNormal=252,252,252
[Colors:View]
BackgroundNormal=27,30,32
BackgroundAlternate=35,38,41
ForegroundNormal=252,252,252
ForegroundLink=29,153,243
ForegroundVisited=155,89,182
[Colors:Button]
BackgroundNormal=49,54,59
ForegroundNormal=252,252,252
[Colors:Selection]
BackgroundNormal=61,174,233
ForegroundNormal=252,252,252
[Colors:Tooltip]
BackgroundNormal=49,54,59
ForegroundNormal=252,252,252
END
}

window_frames() { # theme, scale, folder
    mkdir -p "$3/openbox"
    sed -e "s,<name>Clearlooks</name>,<name>$1</name>,;s,<size>8</size>,<size>$((8 * $2))</size>," \
        /etc/xdg/openbox/rc.xml >"$3/openbox/rc.xml"
}

play() { # light or dark, scale, the ending of the screenshots' names
    local desktop=$work/desktop$3 album=$work/album$3
    "$1_desktop" "$desktop" "$2"
    local -a session=(-u KDE_SESSION_VERSION -u XDG_CURRENT_DESKTOP)
    if [ "$1" = dark ]; then
        session=(KDE_SESSION_VERSION=5 XDG_CURRENT_DESKTOP=KDE)
    fi
    env "${session[@]}" QT_SCALE_FACTOR="$2" XDG_CONFIG_HOME="$desktop" XDG_CONFIG_DIRS="$desktop" \
        build/release/tests/tour "$album"
    local picture
    for picture in "$album"/windows/*.png; do
        convert "$picture" +dither -colors 255 -strip "docs/pictures/$(basename "$picture" .png)$3.png"
    done
}

play light 1 ""
play dark 1 -dark
play light 2 -200
play dark 2 -dark-200
