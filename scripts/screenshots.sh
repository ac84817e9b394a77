#!/usr/bin/env bash
# Makes the pictures of the documentation: builds the program, lets it run its workflow on a display of its own, in English and in
# Chinese, makes the pictures small, and an animation of them. The picture of docs/reference.md is of recorded frames, and is made
# where these are (FFC_TEST_DATA).
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/common.sh

mkdir -p build
install_packages packages.txt packages-docs.txt
build_preset release -DFFC_BUILD_TESTS=OFF

pictures=$(mktemp -d)
trap 'rm -rf "$pictures"' EXIT
bin=build/release/bin

# run_workflow LANGUAGE: with settings of its own, so that the window looks as it does the first time.
run_workflow() {
  XDG_CONFIG_HOME="$pictures/settings" xvfb-run -a -s '-screen 0 1280x800x24 -noreset' \
    "$bin/ffchost" --language "$1" --screenshots "$pictures/$1"
}

# keep LANGUAGE PICTURE NAME COLOURS: below 180 KB. The noise of a flat image is what costs; few greys hide it.
keep() {
  pngquant --force --nofs --strip --speed 1 --output "docs/images/$3.png" "$4" "$pictures/$1/$2.png"
}

# animate: each step of the workflow for two seconds, the last one for four. An APNG, which shows its first picture where
# animations are not known.
animate() {
  local step number=0
  for step in 1-raw 2-dark 3-bright 4-executed 6-split 7-quality; do
    convert "$pictures/en/$step.png" -filter box -resize 960x600 -strip "$pictures/small.png"
    pngquant --force --nofs --strip --speed 1 --output "$pictures/step$number.png" 48 "$pictures/small.png"
    printf 'delay=%s/1\n' "$([ "$step" = 7-quality ] && echo 4 || echo 2)" >"$pictures/step$number.txt"
    number=$((number + 1))
  done
  apngasm docs/images/workflow.png "$pictures/step0.png" 2 1 >/dev/null
}

# join_before_after: the mean images before and after, as the program writes them without a window.
join_before_after() {
  "$bin/ffchost" --headless --out "$pictures/headless" >/dev/null
  convert "$pictures/headless/before.png" "$pictures/headless/after.png" +append -filter box -resize 1120x -strip \
    docs/images/before-after.png
}

mkdir -p docs/images
run_workflow en
run_workflow zh
keep en 1-raw 1-raw 64
keep en 3-bright 3-bright 96
keep en 5-corrected 4-corrected 32
keep en 6-split 5-split 64
keep en 7-quality 6-quality 96
keep zh 7-quality 6-quality-zh 96
animate
join_before_after
if [ -n "${FFC_TEST_DATA:-}" ]; then
  scripts/reference-figures.py --ffc "$bin/ffc" --picture docs/images/reference.png >/dev/null
fi
ls -l docs/images
