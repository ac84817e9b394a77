#!/usr/bin/env bash
# Runs clang-tidy over the project's own code, with the compile commands of a built preset (default: release).
set -uo pipefail
cd "$(dirname "$0")/.." || exit 1
build=build/${1:-release}
report=$(git ls-files -- '*.cpp' ':!:*_win32.cpp' | xargs -P "$(nproc)" -n 4 clang-tidy -p "$build" --quiet 2>&1)
status=$?
grep -vE '^[0-9]+ warnings? (generated|treated)|^Suppressed|^Use -header-filter' <<<"$report"
exit "$status"
