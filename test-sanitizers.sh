#!/usr/bin/env bash
# Every test under the address, undefined behavior and leak sanitizers; about an hour on two cores,
# most of it the build. Arguments are names of tests as `ctest -R` takes them: ./test-sanitizers.sh RecordStore
set -euo pipefail
cd "$(dirname "$0")"

tools/install-packages.sh
tools/build.sh asan
XDG_RUNTIME_DIR=$(mktemp -d)
export XDG_RUNTIME_DIR
trap 'rm -rf "$XDG_RUNTIME_DIR"' EXIT
# The preset has every process write its findings into this folder, also the programs that a test
# starts.
reports=build/asan/reports
rm -rf "$reports"
mkdir -p "$reports"
passed=0
ctest --preset asan -R "${1:-.}" --output-log build/asan.log || passed=$?
if [ -n "$(ls -A "$reports")" ]; then
    cat "$reports"/*
    echo "The sanitizers have written $(find "$reports" -type f | wc -l) reports into $reports." >&2
    exit 1
fi
exit "$passed"
