#!/usr/bin/env bash
# Installs what is missing, builds, lays down a program folder beside a sample accounting
# installation, and starts the program. Without a display it plays a tour in a virtual one.
set -euo pipefail
cd "$(dirname "$0")"

tools/install-packages.sh
bin=build/release/bin

has_display() {
    [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]
}

if ! has_display; then
    echo "There is no display here: playing a tour of the program in a virtual one."
    tools/build.sh release
    rm -rf tour
    build/release/tests/tour tour
    echo "The pictures and the collected entries are in the folder tour."
    exit 0
fi

tools/build.sh release WorklogRemote exchange_client help_file
demo=$PWD/demo
program=$demo/program
mkdir -p "$program"
# The folder keeps its databases from one run to the next; only the program is brought up to date.
for file in WorklogRemote WL.HLP; do
    cp "$bin/$file" "$program/$file.new"
    mv "$program/$file.new" "$program/$file"
done
if [ ! -d "$demo/mas90/worklog" ]; then
    "$bin/pvxwin32.exe" --sample "$demo/mas90"
else
    cp "$bin/pvxwin32.exe" "$demo/mas90/Home/pvxwin32.exe.new"
    mv "$demo/mas90/Home/pvxwin32.exe.new" "$demo/mas90/Home/pvxwin32.exe"
fi
if [ ! -e "$program/mas90.ini" ]; then
    root=$demo/mas90
    printf '%s\n"%s/launcher/sota.ini" "%s/kv/kv_startup.m4p" -ARG RUN_DIRECT UION * WLWXBA\n' \
        "$root" "$root" "$root" >"$program/mas90.ini"
fi
echo "The program folder is demo/program; the sample accounting installation is demo/mas90."
exec "$program/WorklogRemote"
