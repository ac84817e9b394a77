#!/usr/bin/env bash
# Installs what is missing, builds the optimised program and runs its tests. More, on request:
#
#   ./test.sh --all        the same, then with the sanitizers, and the fuzz targets
#   ./test.sh PRESET ...   one or several of release, debug, asan, tsan, clang (release by the other compiler)
#   ./test.sh --windows    built for 64-bit Windows with a tool chain that is made first, run under Wine
#                          (FFC_QT_MINGW_CACHE: see scripts/windows/toolchain.sh)
#   ./test.sh --cluster    a Slurm cluster of one node is started (as root) and the tests that need one are run there
#   ./test.sh --soak [PART ...]
#                          the long forms of the reliability tests: all combinations and millions of frames, and each
#                          fuzz target for FFC_SOAK_MINUTES (60): some ten hours, or some of its parts, which are
#                          faults (accesses, allocations and files that fail, by the thousand), run (operations and
#                          frames without end), tsan and asan (both of them with that sanitizer), fuzz. FFC_SEED sets
#                          another order of what happens; FFC_SOAK_OPERATIONS and FFC_SOAK_FRAMES how much.
#   ./test.sh --mutants [MINUTES]
#                          the product is made wrong in one place at a time, to see whether its tests find that: a sample
#                          for 20 minutes after the build, or so many (scripts/mutate.py)
#
# FFC_TEST_DATA names a folder with recorded frames; without it the tests on such frames are skipped.
set -euo pipefail
cd "$(dirname "$0")"
. scripts/common.sh

# run_ctest PRESET [CTEST OPTION ...]: programs for Windows have one desktop whatever the displays are.
run_ctest() {
  case "$1" in
    windows-*) xvfb-run -a -s "$screen" ctest --preset "$@" ;;
    *) run_on_displays ctest --preset "$@" ;;
  esac
}

# show_failures PRESET: what the failed tests of the last run said, last on the screen: of a program with many tests, what
# those said that did not pass.
show_failures() {
  local logs=build/$1/Testing/Temporary
  [ -f "$logs/LastTestsFailed.log" ] || return 0
  awk '
    FNR == NR { sub(/^[0-9]+:/, ""); failed[$0] = 1; next }
    /^[0-9]+\/[0-9]+ Test: / { sub(/^[^:]*: /, ""); name = $0 }
    /^Output:$/ { count = -1; collecting = 1; next }
    collecting && /^<end of output>$/ {
      collecting = 0
      if (name in failed) {
        printf "\n== failed: %s\n", name
        for (i = count > 80 ? count - 80 : 0; i < count; i++) print lines[i]
      }
    }
    collecting && /^\[ RUN      \]/ { mark = count }
    collecting && /^\[       OK \]/ { count = mark; next }
    collecting { if (count >= 0) lines[count] = $0; count++ }' "$logs/LastTestsFailed.log" "$logs/LastTest.log"
}

# test_preset PRESET
test_preset() {
  echo "== $1: build"
  build_preset "$1" -DFFC_BUILD_TESTS=ON
  echo "== $1: test"
  local status=0
  run_ctest "$1" --parallel "$(nproc)" || status=1
  # For the page of figures, which a later run of some tests does not spoil.
  cp "build/$1/Testing/Temporary/LastTest.log" "build/$1/all-tests.log"
  [ "$status" -eq 0 ] || show_failures "$1"
  return "$status"
}

test_windows() {
  install_packages packages.txt packages-windows.txt
  echo '== windows-mingw: tool chain'
  scripts/windows/toolchain.sh
  # What an interrupted run left would sit on a display that is gone.
  scripts/windows/wine.sh --end
  trap 'scripts/windows/wine.sh --end' EXIT
  test_preset windows-mingw
}

test_cluster() {
  install_packages packages-cluster.txt
  echo '== release: build'
  build_preset release -DFFC_BUILD_TESTS=ON
  echo '== release: test on a cluster'
  scripts/cluster.sh ctest --preset release --tests-regex '^Slurm\.' --no-tests=error --verbose
}

# soak_reliability PRESET OPERATIONS FRAMES [FILTER]: the long forms, with so many operations and frames in each mode. A
# filter of GoogleTest leaves some of them out; a sanitizer takes them all.
soak_reliability() {
  echo "== $1: soak"
  build_preset "$1" -DFFC_BUILD_TESTS=ON
  export FFC_SOAK=1 FFC_SOAK_OPERATIONS=${FFC_SOAK_OPERATIONS:-$2} FFC_SOAK_FRAMES=${FFC_SOAK_FRAMES:-$3}
  if [ "$1" = release ]; then
    # Its tests are entries of ctest by their own names.
    LC_ALL=C.UTF-8 QT_XCB_GL_INTEGRATION=none \
      run_on_displays build/release/bin/reliability_test --gtest_filter="$4"
  else
    run_ctest "$1" --tests-regex '^reliability' --no-tests=error --timeout 36000 --verbose
  fi
}

soak_part() {
  case "$1" in
    faults) soak_reliability release 1 1 '-*LongRun*' ;;
    run) soak_reliability release 10000 1000000 '*LongRun*' ;;
    tsan) soak_reliability tsan 10000 1000000 ;;
    asan) soak_reliability asan 2000 200000 ;;
    fuzz) scripts/fuzz.sh --soak ;;
    *)
      echo "test.sh: no part of the soak is called '$1'" >&2
      return 2
      ;;
  esac
}

mkdir -p build
if [ "${1:-}" = --windows ]; then
  test_windows
  exit
fi
install_packages packages.txt packages-test.txt
case "${1:-}" in
  '') test_preset release ;;
  --all)
    for preset in release asan tsan; do
      test_preset "$preset"
    done
    scripts/fuzz.sh
    ;;
  --cluster) test_cluster ;;
  --soak)
    shift
    for part in ${@:-faults run tsan asan fuzz}; do
      (soak_part "$part")
    done
    ;;
  --mutants) scripts/mutate.py --sample 1500 --minutes "${2:-20}" ;;
  -*)
    sed -n '2,/^set /{s/^# \{0,1\}//;/^set /d;p}' "$0" >&2
    exit 2
    ;;
  *)
    for preset in "$@"; do
      [ "$preset" != clang ] || install_packages packages-fuzz.txt
      test_preset "$preset"
    done
    ;;
esac
