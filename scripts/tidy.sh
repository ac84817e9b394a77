#!/usr/bin/env bash
# Runs clang-tidy over the project's own code, with the compile commands of a built preset (default: debug).
# Not of one with precompiled headers, which are another compiler's.
set -uo pipefail
cd "$(dirname "$0")/.." || exit 1
build=build/${1:-debug}
# Without what this build does not compile: files for Windows, and a stand-in that is built by a test.
report=$(git ls-files -- '*.cpp' ':!:*_win32.cpp' ':!:tests/ombrix/substitute' ':!:tests/platform/version*' \
  ':!:tests/genapi/sdk' | xargs -P "$(nproc)" -n 4 clang-tidy -p "$build" --quiet 2>&1)
status=$?
grep -vE '^[0-9]+ warnings? (generated|treated)|^Suppressed|^Use -header-filter' <<<"$report"
exit "$status"
