#!/usr/bin/env bash
# Builds the fuzz targets of tests/fuzz/ with clang and runs each on inputs that libFuzzer makes up:
# "scripts/fuzz.sh" for 20 seconds each, as many at a time as there are processors; "scripts/fuzz.sh SECONDS
# [TARGET ...]" as long as told; "scripts/fuzz.sh --soak" for an hour each (FFC_SOAK_MINUTES).
#
# Inputs that reach new code are kept in build/fuzz/corpus/TARGET, for the next run; build/fuzz/tally has a line for each run
# that found nothing: target, seconds of processor time, inputs. An input that breaks something is left in
# build/fuzz/found/TARGET-...: it belongs into tests/fuzz/regressions/TARGET, where fuzz_regression_test runs it in every build.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/common.sh

targets=(coefficientgenerator vignetting ombrix hostfile devicefile vignettingfile pluginrecords
  aravisnodemap tifffile fitsfile serfile rawfile sidefile defectlist)
out=$root/build/fuzz

# run_target NAME SECONDS: one line about it, and the end of libFuzzer's report when it found something. Files are
# written to memory where the system has a folder there.
run_target() {
  local name=$1 seconds=$2 log=$out/$1.log inputs executions status=0 fast_unwind=1
  local LC_ALL=C TIMEFORMAT='%U %S'
  mkdir -p "$out/corpus/$name" "$out/found"
  inputs=("$out/corpus/$name")
  for folder in seeds regressions; do
    [ ! -d "tests/fuzz/$folder/$name" ] || inputs+=("tests/fuzz/$folder/$name")
  done
  [ ! -w /dev/shm ] || export TMPDIR=/dev/shm
  # The leak of Qt's own that is suppressed is known by a function that only the slow way up the stack finds.
  [ "$name" != sidefile ] || fast_unwind=0
  { time LC_ALL=C.UTF-8 QT_QPA_PLATFORM=offscreen \
    ASAN_OPTIONS=allocator_may_return_null=1:max_allocation_size_mb=512:detect_stack_use_after_return=1:fast_unwind_on_malloc=$fast_unwind \
    LSAN_OPTIONS=suppressions=$root/tests/support/lsan.supp:print_suppressions=0 \
    UBSAN_OPTIONS=print_stacktrace=1 \
    "$out/bin/fuzz_$name" -max_total_time="$seconds" -max_len=2048 -timeout=20 -rss_limit_mb=2048 \
    -print_final_stats=1 -artifact_prefix="$out/found/$name-" "${inputs[@]}" >"$log" 2>&1; } 2>"$out/$name.time" || status=$?
  if [ "$status" -ne 0 ]; then
    tail -n 60 "$log" >&2
    echo "$name: found something, see above and $log" >&2
    return 1
  fi
  executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
  awk -v name="$name" -v executions="$executions" '{ print name, $1 + $2, executions }' "$out/$name.time" >>"$out/tally"
  echo "$name: $executions executions," \
    "$(sed -n 's/.* cov: \([0-9]*\).*/\1/p' "$log" | tail -n 1) edges"
}

if [ "${1:-}" = --run ]; then
  run_target "$2" "$3"
  exit
fi

seconds=${1:-20}
if [ "$seconds" = --soak ]; then
  seconds=$((${FFC_SOAK_MINUTES:-60} * 60))
fi
[ $# -lt 2 ] || targets=("${@:2}")

mkdir -p build
install_packages packages.txt packages-fuzz.txt
echo '== fuzz: build'
configure_preset fuzz
cmake --build build/fuzz --target fuzzers --parallel "$(nproc)"
echo "== fuzz: ${#targets[@]} targets, $seconds seconds each"
printf '%s\0' "${targets[@]}" | xargs -0 -P "$(nproc)" -I{} scripts/fuzz.sh --run {} "$seconds"
