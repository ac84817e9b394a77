#!/usr/bin/env bash
# Installs what is missing, builds, and runs the reference host on the simulated camera: in a window
# where there is a display, else headless with pictures and figures in out/. Options go to ffchost
# (./run.sh --help lists them).
set -euo pipefail
cd "$(dirname "$0")"
. scripts/common.sh

mkdir -p build
install_packages packages.txt
[ -x build/release/bin/ffchost ] || echo 'Building; this takes some minutes the first time.' >&2
build_preset release -DFFC_BUILD_TESTS=OFF >build/release-build.log 2>&1 || {
  tail -n 40 build/release-build.log >&2
  exit 1
}
exec build/release/bin/ffchost "$@"
