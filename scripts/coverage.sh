#!/usr/bin/env bash
# Which lines, branches and conditions of the product its tests run, those of the tool ffc also while each of its calls to the disk
# fails once: builds them with clang (preset coverage), runs them, and prints a table by folder; build/coverage/report/ has the
# sources with their counts.
# "scripts/coverage.sh --report" prints it of the last run.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/common.sh

folders=(ombrix pluginobject/shadingcorrection/imagecalc pluginobject/shadingcorrection/process frames reference flat quality tools
  pluginobject pluginobject/shadingcorrection platform genapi camera host)
# What looks at the built files is for the build without counters; what lets threads meet for minutes adds no line.
skipped='^(ombrix_exports_test|ombrix_substitute_test|pluginobject_framethread_test)$'
wanted='^(ombrix_[a-z]+_test|ombrix_test|imagecalc_test|process_[a-z]+_test|process_test|frames_test|platform_test|platform_moduleversion_test|genapi_test|genapi_pfnc_test|camera_test|camera_[a-z]+_test|aravis_[a-z]+_test|framefiles_fuzzregression_test|ffc_tool_test|reference_test|quality_test|host_test|host_[a-z]+_test|pluginobject_[a-z]+_test|pluginobject_test|dialog_test|widgets_test)$'
build=$root/build/coverage

build_tests() {
  install_packages packages.txt packages-coverage.txt
  echo '== coverage: build'
  configure_preset coverage -DFFC_BUILD_TESTS=ON
  mapfile -t programs < <(ctest --test-dir "$build" --show-only=json-v1 |
    python3 -c 'import json, sys; print("\n".join(test["name"] for test in json.load(sys.stdin)["tests"]))' |
    grep -E "$wanted" | grep -vE "$skipped")
  cmake --build "$build" --parallel "$(nproc)" --target FlatFieldCorrection reliability_test "${programs[@]}"
  printf '%s\n' "${programs[@]}" >"$build/programs"
}

# Each program adds to one file of counts, also when several run at a time.
run_tests() {
  echo '== coverage: test'
  rm -rf "$build/counts"
  LLVM_PROFILE_FILE=$build/counts/%4m.profraw run_on_displays \
    ctest --test-dir "$build" --parallel "$(nproc)" --output-on-failure --no-tests=error \
    --tests-regex "^($(paste -sd "|" "$build/programs"))(_baseline|_v2|_v3)?\$"
  LLVM_PROFILE_FILE=$build/counts/%4m.profraw FFC_SOAK=1 QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8 \
    "$build/bin/reliability_test" --gtest_filter='Commands/ToolFaults.AFileThatFails*' --gtest_brief=1
}

report() {
  local program objects=()
  while read -r program; do
    objects+=(-object "$build/bin/$program")
  done <"$build/programs"
  objects+=(-object "$build/bin/FlatFieldCorrection.plx" -object "$build/bin/libOmbrix.so" -object "$build/bin/ffc" -object "$build/bin/ffchost")
  llvm-profdata-19 merge --sparse --output "$build/counts/all.profdata" "$build"/counts/*.profraw
  llvm-cov-19 export --summary-only --instr-profile "$build/counts/all.profdata" "${objects[@]:1}" \
    --ignore-filename-regex '/tests/|^/usr/' >"$build/coverage.json" 2>"$build/llvm-cov.log"
  llvm-cov-19 show --format=html --output-dir "$build/report" --show-branches=count --show-mcdc --instr-profile "$build/counts/all.profdata" \
    "${objects[@]:1}" --ignore-filename-regex '/tests/|^/usr/' 2>>"$build/llvm-cov.log"
  python3 scripts/coveragetable.py "$root" "$build/coverage.json" "${folders[@]}" | tee "$build/table"
}

case "${1:-}" in
  '')
    mkdir -p build
    build_tests
    run_tests
    report
    ;;
  --build) mkdir -p build && build_tests ;;
  --report) report ;;
  *)
    sed -n '2,/^set /{s/^# \{0,1\}//;/^set /d;p}' "$0" >&2
    exit 2
    ;;
esac
