#!/usr/bin/env bash
# Installs what is missing, builds and runs the whole test suite: optimised, with the address and
# undefined-behaviour sanitizers, and with the thread sanitizer. "./test.sh release" (asan, tsan) runs one.
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

mkdir -p build
if [ "${1:-}" = --windows ]; then
  test_windows
  exit
fi

install_packages packages.txt
presets=("$@")
[ ${#presets[@]} -gt 0 ] || presets=(asan tsan release)

for preset in "${presets[@]}"; do
  echo "== $preset: build"
  build_preset "$preset" -DFFC_BUILD_TESTS=ON
  run_tests "$preset"
done

# Without arguments the fuzz targets too, for a short time.
[ $# -gt 0 ] || scripts/fuzz.sh
