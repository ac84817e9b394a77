#!/usr/bin/env bash
# Installs what the benchmarks need (OpenCV and Google Benchmark among it), builds and runs them, and prints tables of
# ratios: some four minutes once it is built. FFC_INSTRUCTION_LEVEL=baseline|v2|v3|v4 measures another level than the
# processor's own. What docs/performance.md says about the figures holds for a machine that does nothing else.
#
#   ./bench.sh          everything
#   ./bench.sh batch    recorded frames alone: 200 frames of 5 megapixels, in a folder for temporary files that has room for
#                       5 GB: FFC_BENCH_FOLDER, else /dev/shm (files in memory), else that of the system
set -euo pipefail
cd "$(dirname "$0")"
. scripts/common.sh

# build WORD ...: with the output in a log.
build() {
  "$@" >build/bench-build.log 2>&1 || {
    tail -n 40 build/bench-build.log >&2
    exit 1
  }
}

# has_room FOLDER: for the frames, and what is made of them.
has_room() {
  [ "$(df --output=avail --block-size=1G "$1" 2>/dev/null | tail -n 1)" -ge 5 ] 2>/dev/null
}

# run_benchmark PROGRAM NAME: many short repetitions in random order, so that whatever else the machine does meets all alike.
run_benchmark() {
  "build/bench/bin/$1" --benchmark_repetitions=3 --benchmark_enable_random_interleaving=true \
    --benchmark_format=json >"out/$2.json" 2>"out/$2.log"
}

run_batch_benchmark() {
  local folder=${FFC_BENCH_FOLDER:-/dev/shm}
  has_room "$folder" || folder=${TMPDIR:-/tmp}
  has_room "$folder" || { echo 'There is no room for recorded frames: set FFC_BENCH_FOLDER.' >&2; return 1; }
  echo "Running batch_benchmark in $folder." >&2
  build/bench/bin/batch_benchmark build/release/bin/ffc "$folder" 200 >out/batch_benchmark.txt
  python3 benchmarks/table.py out/batch_benchmark.txt | tee out/batch.md
}

case "${1:-}" in
  '' | batch) ;;
  *)
    sed -n '2,/^set /{s/^# \{0,1\}//;/^set /d;p}' "$0" >&2
    exit 2
    ;;
esac
mkdir -p build out
install_packages packages.txt packages-bench.txt
echo 'Building.' >&2
build configure_preset release
build cmake --build build/release --parallel "$(nproc)" --target ffc
if [ "${1:-}" = batch ]; then
  build configure_preset bench
  build cmake --build build/bench --parallel "$(nproc)" --target batch_benchmark
  run_batch_benchmark
  exit
fi
build build_preset bench
run_benchmark frame_benchmark frame_benchmark
# Each figure's smallest and largest value tells what a rerun may give.
for run in 1 2 3; do
  echo "Running kernel_benchmark, acquisition_benchmark and latency_benchmark, run $run of 3." >&2
  run_benchmark kernel_benchmark "kernel_benchmark-$run"
  build/bench/bin/acquisition_benchmark >"out/acquisition_benchmark-$run.txt"
  build/bench/bin/latency_benchmark >"out/latency_benchmark-$run.txt"
done
runs() { echo "out/$1-1.$2,out/$1-2.$2,out/$1-3.$2"; }
python3 benchmarks/table.py "$(runs kernel_benchmark json)" out/frame_benchmark.json "$(runs acquisition_benchmark txt)" \
  "$(runs latency_benchmark txt)" |
  tee out/benchmarks.md
printf '\nRecorded frames from file to file, of 5 megapixels and 12 bits, 200 in one TIFF file and in single ones:\n\n'
run_batch_benchmark
echo 'Running reference_benchmark.' >&2
build/bench/bin/reference_benchmark | tee -a out/benchmarks.md
