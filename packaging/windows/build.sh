#!/usr/bin/env bash
# Builds the Windows programs on Debian: packaging/windows/build.sh [target...]
# Without a target everything, the installer and the tests too. The programs are in
# build/windows/bin, the installer in build/windows/packages.
set -euo pipefail
cd "$(dirname "$0")/../.."

tools/install-packages.sh windows
WORKLOG_WINDOWS_TOOLCHAIN=$(packaging/windows/toolchain.sh)
export WORKLOG_WINDOWS_TOOLCHAIN
tools/build.sh windows "$@"
