#!/usr/bin/env bash
# Builds the Windows programs and tries them under Wine: every test that this system's programs
# have, as Windows programs in a virtual display, and then the installed program from end to end.
set -euo pipefail
cd "$(dirname "$0")"

packaging/windows/build.sh
tools/with-wine.sh ctest --preset windows
