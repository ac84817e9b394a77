#!/usr/bin/env bash
# Runs clang-tidy over the project's own code, with the compile commands of a built preset: tidy.sh [PRESET [FOLDER...]], by
# default debug and everything, FFC_JOBS (all processors) sources at a time. Not of one with precompiled headers, which are
# another compiler's. A line for each source that is clean, and what is found in the others; at the end how many are clean.
set -uo pipefail
cd "$(dirname "$0")/.." || exit 1
export build=build/${1:-debug}
shift
report=$(mktemp)
export report
trap 'rm -f "$report"' EXIT

# tidy_source SOURCE: shows what is found in it, or that it is clean, and notes which.
tidy_source() {
  local found verdict=found
  found=$(clang-tidy -p "$build" --quiet "$1" 2>&1) && verdict=clean
  if [ "$verdict" = clean ]; then
    found="clean: $1"
  fi
  grep -vE '^[0-9]+ warnings? (generated|treated)|^Suppressed|^Use -header-filter|^$' <<<"$found"
  echo "$verdict ${1%/*} $1" >>"$report"
}
export -f tidy_source

# Only what this build compiles: not files for other systems, nor stand-ins that a test builds by itself.
compiled=$(sed -n "s|^ *\"file\": \"$PWD/\(.*\)\",\{0,1\}\$|\1|p" "$build/compile_commands.json" | sort -u)
comm -12 <(git ls-files -- "$@" | grep '\.cpp$' | sort) <(echo "$compiled") |
  xargs -P "${FFC_JOBS:-$(nproc)}" -I{} bash -c 'tidy_source {}'

awk '{ count[$2]++; all++ } $1 == "clean" { clean[$2]++; allclean++ }
  END { for (folder in count) printf "%4d of %4d clean  %s\n", clean[folder], count[folder], folder | "sort -k5"
        close("sort -k5"); printf "%4d of %4d clean\n", allclean, all; exit allclean < all }' "$report"
