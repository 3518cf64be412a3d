#!/usr/bin/env bash
# Installs what is missing, builds, makes companies of several sizes, and times the program's
# windows and the exchange client against the limits of this machine. Fails when a goal is missed.
# docs/performance.md says what the rows mean.
set -euo pipefail
cd "$(dirname "$0")"

tools/install-packages.sh
tools/build.sh release
data=build/bench-data
rm -rf "$data"
mkdir -p "$data"
XDG_RUNTIME_DIR=$(mktemp -d)
export XDG_RUNTIME_DIR
trap 'rm -rf "$data" "$XDG_RUNTIME_DIR"' EXIT

make_company() { # name customers projects entries days
    QT_QPA_PLATFORM=offscreen build/release/bin/makecompany --customers "$2" --projects "$3" \
        --activities 500 --entries "$4" --days "$5" "$data/$1"
}
make_company 10k 20000 50000 10000 250
make_company 100k 20000 50000 100000 1000
make_company customers10k 10000 500 100 10
make_company customers100k 100000 500 100 10
make_company projects 20000 1000000 100000 1000
make_company million 1000000 1000000 100000 1000

# A goal that is missed on one platform does not keep the other from being measured.
missed=0
echo "On the offscreen platform:"
QT_QPA_PLATFORM=offscreen build/release/bench/windowbench "$data" || missed=1
echo "On a virtual display:"
xvfb-run --auto-servernum sh -c 'openbox & exec "$@"' - \
    env QT_QPA_PLATFORM=xcb build/release/bench/windowbench "$data" || missed=1
echo "The pieces by themselves:"
build/release/bench/pieces || missed=1
exit $missed
