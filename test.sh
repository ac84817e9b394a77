#!/usr/bin/env bash
# Installs what is missing, builds and runs the whole test suite: optimised, with the address and
# undefined-behaviour sanitizers, and with the thread sanitizer. "./test.sh release" (asan, tsan) runs one.
# "./test.sh --soak" runs the long forms of the reliability tests instead: all combinations and millions of frames,
# and each fuzz target for FFC_SOAK_MINUTES (60). FFC_SEED sets another order of what happens.
# "./test.sh --windows" builds for 64-bit Windows instead, with a tool chain that it makes first, and runs
# the suite under Wine (FFC_QT_MINGW_CACHE: see scripts/windows/toolchain.sh).
set -euo pipefail
cd "$(dirname "$0")"
. scripts/common.sh

# run_tests PRESET: with real windows, on a display of their own, which must not reset itself whenever the last
# program closes it.
run_tests() {
  echo "== $1: test"
  xvfb-run -a -s '-screen 0 1600x1200x24 -noreset' ctest --preset "$1" --parallel "$(nproc)"
}

test_windows() {
  install_packages packages.txt packages-windows.txt
  echo '== windows-mingw: tool chain'
  scripts/windows/toolchain.sh
  echo '== windows-mingw: build'
  build_preset windows-mingw -DFFC_BUILD_TESTS=ON
  # What an interrupted run left would sit on a display that is gone.
  scripts/windows/wine.sh --end
  trap 'scripts/windows/wine.sh --end' EXIT
  run_tests windows-mingw
}

# soak_reliability PRESET OPERATIONS FRAMES: the long forms, with so many operations and frames in each mode.
soak_reliability() {
  echo "== $1: soak"
  build_preset "$1" -DFFC_BUILD_TESTS=ON
  FFC_SOAK=1 FFC_SOAK_OPERATIONS=$2 FFC_SOAK_FRAMES=$3 \
    xvfb-run -a -s '-screen 0 1600x1200x24 -noreset' ctest --preset "$1" --tests-regex 'reliability' --timeout 36000 \
    --verbose
}

mkdir -p build
if [ "${1:-}" = --soak ]; then
  install_packages packages.txt
  soak_reliability release 10000 1000000
  soak_reliability tsan 10000 1000000
  soak_reliability asan 2000 200000
  scripts/fuzz.sh --soak
  exit
fi
if [ "${1:-}" = --windows ]; then
  test_windows
  exit
fi

install_packages packages.txt
presets=("$@")
if [ ${#presets[@]} -eq 0 ]; then
  presets=(asan tsan release)
  # The fuzz targets too, for a short time.
  scripts/fuzz.sh
fi

for preset in "${presets[@]}"; do
  echo "== $preset: build"
  build_preset "$preset" -DFFC_BUILD_TESTS=ON
  run_tests "$preset"
done
