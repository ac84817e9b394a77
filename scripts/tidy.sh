#!/usr/bin/env bash
# Runs clang-tidy over the project's own code, with the compile commands of a built preset: tidy.sh [PRESET [FOLDER...]], by
# default debug and everything. Not of one with precompiled headers, which are another compiler's.
set -uo pipefail
cd "$(dirname "$0")/.." || exit 1
build=build/${1:-debug}
shift
# Only what this build compiles: not files for other systems, nor stand-ins that a test builds by itself.
compiled=$(sed -n "s|^ *\"file\": \"$PWD/\(.*\)\",\{0,1\}\$|\1|p" "$build/compile_commands.json" | sort -u)
report=$(comm -12 <(git ls-files -- "$@" | grep '\.cpp$' | sort) <(echo "$compiled") |
  xargs -P "$(nproc)" -n 4 clang-tidy -p "$build" --quiet 2>&1)
status=$?
grep -vE '^[0-9]+ warnings? (generated|treated)|^Suppressed|^Use -header-filter' <<<"$report"
exit "$status"
