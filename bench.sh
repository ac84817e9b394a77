#!/usr/bin/env bash
# Installs what the benchmarks need (OpenCV and Google Benchmark among it), builds and runs them, and prints tables of
# ratios: some three minutes once it is built. FFC_INSTRUCTION_LEVEL=baseline|v2|v3|v4 measures another level than the
# processor's own. What docs/performance.md says about the figures holds for a machine that does nothing else.
set -euo pipefail
cd "$(dirname "$0")"
. scripts/common.sh

mkdir -p build out
install_packages packages.txt packages-bench.txt
echo 'Building.' >&2
build_preset bench >build/bench-build.log 2>&1 || {
  tail -n 40 build/bench-build.log >&2
  exit 1
}

# run_benchmark PROGRAM: many short repetitions in random order, so that whatever else the machine does meets all alike.
run_benchmark() {
  echo "Running $1." >&2
  "build/bench/bin/$1" --benchmark_repetitions=9 --benchmark_enable_random_interleaving=true \
    --benchmark_format=json >"out/$1.json" 2>"out/$1.log"
}
run_benchmark kernel_benchmark
run_benchmark frame_benchmark
echo 'Running acquisition_benchmark.' >&2
build/bench/bin/acquisition_benchmark >out/acquisition_benchmark.txt
python3 benchmarks/table.py out/kernel_benchmark.json out/frame_benchmark.json out/acquisition_benchmark.txt |
  tee out/benchmarks.md
echo 'Running reference_benchmark.' >&2
build/bench/bin/reference_benchmark | tee -a out/benchmarks.md
