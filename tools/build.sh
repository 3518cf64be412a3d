#!/usr/bin/env bash
# Builds one preset: tools/build.sh [release|debug|asan] [target...]
set -euo pipefail
cd "$(dirname "$0")/.."

preset=${1:-release}
shift || true
cmake --preset "$preset"
if [ $# -gt 0 ]; then
    cmake --build --preset "$preset" --target "$@"
else
    cmake --build --preset "$preset"
fi
