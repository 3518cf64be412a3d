#!/usr/bin/env bash
# Builds the packages into build/packages.
set -euo pipefail
cd "$(dirname "$0")/.."

tools/build.sh release
cpack --config build/release/CPackConfig.cmake -B "$PWD/build/packages"
rm -rf build/packages/_CPack_Packages
ls build/packages
