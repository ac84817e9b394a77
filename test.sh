#!/usr/bin/env bash
# Installs what is missing, builds and runs the whole test suite: optimised, with the address and
# undefined-behaviour sanitizers, and with the thread sanitizer. "./test.sh release" (asan, tsan) runs one.
set -euo pipefail
cd "$(dirname "$0")"
. scripts/common.sh

mkdir -p build
install_packages
presets=("$@")
[ ${#presets[@]} -gt 0 ] || presets=(asan tsan release)

for preset in "${presets[@]}"; do
  echo "== $preset: build"
  build_preset "$preset" -DFFC_BUILD_TESTS=ON
  echo "== $preset: test"
  # Real windows, on a display of their own, which must not reset itself whenever the last program closes it.
  xvfb-run -a -s '-screen 0 1600x1200x24 -noreset' ctest --preset "$preset" --parallel "$(nproc)"
done
