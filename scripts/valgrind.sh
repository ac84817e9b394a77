#!/usr/bin/env bash
# The tests of the rooms that compute and of the plug-in under memcheck, which also sees memory that nobody has written: the optimised
# build, as it is. "scripts/valgrind.sh PROGRAM ..." runs some of them. Tests whose memory fails or is counted are left out:
# valgrind allocates by itself; the address sanitizer runs all of it. It takes some five minutes, and is not
# in the continuous integration.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/common.sh

programs=(ombrix_kernels_test ombrix_test ombrix_bandpool_test imagecalc_test reference_test frames_test quality_test
  pluginobject_base_test pluginobject_test process_pieces_test process_test process_file_test)
left_out='*Memory*:*TheLastTableOutlivesACalculationThatFails'
left_out+=':*BothCalculationsZeroTheSizeBeforeTheyCanFail:*TheTableIsFreedWithTheCalculator'
build=$root/build/release
logs=$root/build/valgrind

# check PROGRAM: its errors, and whether its tests pass, go to a file of its name.
check() {
  local start=$SECONDS status=0
  QT_QPA_PLATFORM=offscreen QT_ENABLE_REGEXP_JIT=0 LC_ALL=C.UTF-8 OMBRIX_THREADS=3 valgrind --quiet --error-exitcode=99 --num-callers=30 \
    --leak-check=full --show-leak-kinds=definite --errors-for-leak-kinds=definite --fair-sched=yes \
    --suppressions=tests/support/valgrind.supp --gen-suppressions=all --log-file="$logs/$1.errors" \
    "$build/bin/$1" --gtest_brief=1 "--gtest_filter=-$left_out" >"$logs/$1.log" 2>&1 || status=$?
  local errors
  errors=$(grep -c '^{' "$logs/$1.errors" || true)
  local tests failures
  tests=$(sed -n 's/^\[  PASSED  \] \([0-9]* tests*\).*/\1 passed/p' "$logs/$1.log")
  failures=$(grep -c '^\[  FAILED  \].* ms)$' "$logs/$1.log" || true)
  rm -f "$logs/$1.row"
  if [ -z "$tests" ]; then
    echo "$1 did not run to its end."
    return 1
  fi
  [ "$failures" -eq 0 ] || tests+=", $failures failed"
  printf '| `%s` | %d | %s | %s |\n' "$1" $((SECONDS - start)) "$errors" "$tests" | tee "$logs/$1.row"
  [ "$status" -eq 0 ]
}

[ $# -eq 0 ] || programs=("$@")
mkdir -p "$logs"
install_packages packages.txt packages-test.txt packages-valgrind.txt
configure_preset release -DFFC_BUILD_TESTS=ON
cmake --build "$build" --parallel "$(nproc)" --target "${programs[@]}"
failed=0
for program in "${programs[@]}"; do
  check "$program" || failed=1
done
[ "$failed" -eq 0 ] || echo "See $logs."
exit "$failed"
