#!/usr/bin/env bash
# Makes the pictures in docs/images/: builds the program, lets it run its workflow on a display of its own, in
# English and in Chinese, and makes the pictures small.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/common.sh

mkdir -p build
install_packages packages.txt packages-docs.txt
build_preset release -DFFC_BUILD_TESTS=OFF

pictures=$(mktemp -d)
trap 'rm -rf "$pictures"' EXIT

# run_workflow LANGUAGE: with settings of its own, so that the window looks as it does the first time.
run_workflow() {
  XDG_CONFIG_HOME="$pictures/settings" xvfb-run -a -s '-screen 0 1600x1200x24 -noreset' \
    build/release/bin/ffchost --language "$1" --screenshots "$pictures/$1"
}

# keep LANGUAGE PICTURE NAME COLOURS: below 150 KB. The noise of a flat image is what costs; few greys hide it.
keep() {
  pngquant --force --nofs --strip --speed 1 --output "docs/images/$3.png" "$4" "$pictures/$1/$2.png"
}

run_workflow en
run_workflow zh
mkdir -p docs/images
keep en 1-raw 1-raw 96
keep en 3-bright 3-bright 96
keep en 4-corrected 4-corrected 32
keep en 5-quality 5-quality 32
keep zh 5-quality 5-quality-zh 32
ls -l docs/images
