#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test.
set -euo pipefail
cd "$(dirname "$0")"

tools/install-packages.sh
tools/build.sh release
# A runtime folder of its own, so that nothing of a desktop session is needed.
XDG_RUNTIME_DIR=$(mktemp -d)
export XDG_RUNTIME_DIR
trap 'rm -rf "$XDG_RUNTIME_DIR"' EXIT
ctest --preset release
