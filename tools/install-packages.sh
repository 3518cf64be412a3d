#!/usr/bin/env bash
# Installs what packages.txt lists and the machine lacks: tools/install-packages.sh [windows]
# Needs no privileges when nothing is missing.
set -euo pipefail
cd "$(dirname "$0")/.."

mapfile -t wanted < <(sed 's/#.*//' packages.txt | awk -v asked=" $* " '
    /^\[/ { skipped = !index(asked, " " substr($1, 2, length($1) - 2) " "); next }
    NF && !skipped { print $1 }')
missing=()
for package in "${wanted[@]}"; do
    state=$(dpkg-query -W -f='${Status}' "$package" 2>/dev/null || true)
    [ "$state" = "install ok installed" ] || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
as_root=()
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "These packages are missing, and only root can install them." >&2; exit 1; }
    as_root=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -q
"${as_root[@]}" apt-get install -q -y --no-install-recommends "${missing[@]}"
