#!/usr/bin/env bash
# Builds the Windows programs on Debian: packaging/windows/build.sh [target...]
# Without a target the programs, into build/windows/bin, and the setup program that installs them,
# into build/windows/packages. The target "all" has the tests too.
set -euo pipefail
cd "$(dirname "$0")/../.."

tools/install-packages.sh windows
WORKLOG_WINDOWS_TOOLCHAIN=$(packaging/windows/toolchain.sh)
export WORKLOG_WINDOWS_TOOLCHAIN
tools/build.sh windows "${@:-installer}"
