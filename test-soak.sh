#!/usr/bin/env bash
# The long forms of the tests under tests/reliability, a quarter of an hour in all on two cores;
# test.sh runs their short forms. Arguments are names of tests as `ctest -R` takes them: ./test-soak.sh EveryFailure
set -euo pipefail
cd "$(dirname "$0")"

tools/install-packages.sh
tools/build.sh release
XDG_RUNTIME_DIR=$(mktemp -d)
export XDG_RUNTIME_DIR
trap 'rm -rf "$XDG_RUNTIME_DIR"' EXIT
export WORKLOG_SOAK=1
# The counts in docs/reliability.md come from the log.
ctest --preset release -L soak -R "${1:-.}" --timeout 14400 --output-log build/soak.log --verbose
grep -h 'COUNT' build/soak.log
