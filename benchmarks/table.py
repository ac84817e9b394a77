#!/usr/bin/env python3
"""Prints the tables of ratios from the output of the benchmark programs.

table.py KERNELS.json FRAMES.json ACQUISITION.txt LATENCY.txt
table.py BATCH.txt

KERNELS, ACQUISITION and LATENCY may be several files of as many runs, separated by commas: figures are then the smallest and
the largest of the runs', and miss their goal where the middle one does. The figures of a run are of the fastest of the
repetitions, which the programs run in random order: of processor time, and of time by the clock where threads are
compared. What else a machine does makes repetitions slower, none faster. A ratio above 1 is good: it tells how many
times as long the other way takes.
"""
import json
import statistics
import sys

SIZES = ["0.3", "5", "26", "100"]
SMALL_SIZE = "0.3"
GOAL_SIZES = ["5", "26"]
PIXELS = {"5": 2592 * 1944, "26": 6240 * 4160, "100": 11648 * 8736}
# Of frames that several threads share, with the goal of two.
SHARED_SIZES = {"5": None, "26": 1.8, "100": 1.8}
PERCENTILES = [50, 95, 99]
STATES = {"idle": "a processor free", "busy": "a busy neighbour"}
# By the first word of a kernel's name: share of the stream limit for the small size and for the others, times OpenCV's best.
GOALS = {
    "correction": (0.85, 0.95, 2.0),
    "table": (None, 0.75, 1.0),
    "accumulation": (None, 0.85, None),
    "average": (None, 0.85, None),
    "block": (None, 0.5, 5.0),
    "smoothing": (None, None, 3.0),
}


def read_times(path):
    """Shortest times in microseconds by name ("kernel|size|who"), and the context."""
    with open(path, encoding="utf-8") as file:
        report = json.load(file)
    times = {}
    for run in report["benchmarks"]:
        if run["run_type"] == "iteration" and not run.get("error_occurred"):
            scale = {"ns": 1e-3, "us": 1.0, "ms": 1e3}[run["time_unit"]]
            time = run["real_time" if "/real_time" in run["run_name"] else "cpu_time"]
            times.setdefault(run["run_name"].split("/")[0], []).append(time * scale)
    return {name: min(values) for name, values in times.items()}, report["context"]


def group(times_by_name):
    """Times by kernel, size and who, in the order of the report's kernels."""
    kernels = {}
    for name, time in times_by_name.items():
        kernel, size, who = name.split("|")
        kernels.setdefault(kernel, {}).setdefault(size, {})[who] = time
    return dict(sorted(kernels.items()))


def best_opencv(times):
    forms = {who[len("opencv "):]: time for who, time in times.items() if who.startswith("opencv ")}
    return min(forms.items(), key=lambda form: form[1], default=None)


def show(values, digits=2):
    """One figure, or the smallest and the largest of several."""
    low, high = (f"{value:.{digits}f}" for value in (min(values), max(values)))
    return low if low == high else f"{low} to {high}"


def judge(values, goal):
    """Values of some runs, marked where the middle one misses its goal."""
    return show(values) + ("" if goal is None or statistics.median(values) >= goal else " (!)")


def judge_cost(values, goal):
    """Values of some runs, marked where the middle one exceeds its goal."""
    return show(values) + ("" if statistics.median(values) <= goal else " (!)")


def compare(runs, kernel, size, one, other):
    """How many times as long the one way takes as the other, in each run."""
    return [run[kernel][size][one] / run[kernel][size][other] for run in runs]


def print_kernels(runs):
    print("| kernel | of the limit, 0.3 | 5 | 26 | x OpenCV's best, 5 | 26 | OpenCV's best | x slow twin |")
    print("|---|---|---|---|---|---|---|---|")
    for kernel, sizes in runs[0].items():
        if SMALL_SIZE not in sizes:
            continue
        small_goal, limit_goal, opencv_goal = GOALS.get(kernel.split()[0], (None, None, None))
        limits, rivals, form = [judge(compare(runs, kernel, SMALL_SIZE, "limit", "ours"), small_goal)], [], ""
        for size in GOAL_SIZES:
            limits.append(judge(compare(runs, kernel, size, "limit", "ours"), limit_goal))
            best = best_opencv(sizes[size])
            times = [(best_opencv(run[kernel][size]), run[kernel][size]["ours"]) for run in runs]
            rivals.append("" if best is None else judge([opencv[1] / ours for opencv, ours in times], opencv_goal))
            form = "" if best is None else best[0]
        twin = show(compare(runs, kernel, SMALL_SIZE, "twin", "ours"), 0) if "twin" in sizes[SMALL_SIZE] else ""
        print("| " + " | ".join([kernel, *limits, *rivals, form, twin]) + " |")


def print_growth(runs):
    print("| kernel | " + " | ".join(f"{size} Mpx" for size in SIZES) + " |")
    print("|---" * (len(SIZES) + 1) + "|")
    for kernel, sizes in runs[0].items():
        if SMALL_SIZE not in sizes:
            continue
        cells = []
        for size in SIZES:
            per_pixel = [{one: run[kernel][one]["ours"] / float(one) for one in (size, "5")} for run in runs]
            cells.append(show([times[size] / times["5"] for times in per_pixel]))
        print(f"| {kernel} | " + " | ".join(cells) + " |")


def print_threads(runs):
    print("| kernel | Mpx | frames/s, 1 thread | GB/s | frames/s, 2 threads | GB/s | 2 threads / 1 | stream, 2 / 1 | of the stream, 2 threads |")
    print("|---|---|---|---|---|---|---|---|---|")
    for kernel, sizes in runs[0].items():
        for size, goal in SHARED_SIZES.items():
            if "2 threads" not in sizes.get(size, {}):
                continue
            # A frame's bytes, as its camera delivers it to the host.
            frame_bytes = PIXELS[size] * (1 if " 8 bit" in kernel else 2)
            rates = []
            for who in ("1 thread", "2 threads"):
                times = [run[kernel][size][who] for run in runs]
                rates.append(show([1e6 / time for time in times], 0))
                rates.append(show([frame_bytes / time / 1e3 for time in times], 1))
            gain = judge(compare(runs, kernel, size, "1 thread", "2 threads"), goal)
            stream = show(compare(runs, kernel, size, "stream, 1 thread", "stream, 2 threads"))
            share = show(compare(runs, kernel, size, "stream, 2 threads", "2 threads"))
            print(f"| {kernel} | {size} | {' | '.join(rates)} | {gain} | {stream} | {share} |")


def print_fresh(runs):
    print("| | 5 Mpx | 26 Mpx | 100 Mpx |")
    print("|---|---|---|---|")
    for kernel, sizes in runs[0].items():
        if "fresh sums" in sizes["26"]:
            cells = [show(compare(runs, kernel, size, "fresh sums", "used sums")) for size in SHARED_SIZES]
            print(f"| {kernel} | {' | '.join(cells)} |")


def read_counter(path, name, counter):
    """The median of a counter over the repetitions."""
    with open(path, encoding="utf-8") as file:
        runs = json.load(file)["benchmarks"]
    return statistics.median(
        run[counter] for run in runs if run["run_type"] == "iteration" and run["run_name"].startswith(name)
    )


def print_frames(path):
    kernel = read_counter(path, "frame|5|pairs", "kernel_us")
    print(f"- ProcessImage at 5 Mpx takes {read_counter(path, 'frame|5|pairs', 'ratio'):.3f} times the bare kernel.")
    small = "frame|0.003|pairs"
    more = read_counter(path, small, "call_us") - read_counter(path, small, "kernel_us")
    print(f"- On a frame of 64 x 48 it takes {more * 1000:.0f} ns more, {100 * more / kernel:.3f} % of the kernel at 5 Mpx.")
    poll = read_times(path)[0]["poll|0|WaitImageRequest"]
    print(f"- A poll for a request takes {poll * 1000:.0f} ns, {100 * poll / kernel:.4f} % of the kernel at 5 Mpx.")


def read_values(path):
    """The values of lines "part name value", by part and name."""
    values = {}
    with open(path, encoding="utf-8") as file:
        for line in file:
            part, name, value = line.split()
            values.setdefault(part, {})[name] = float(value)
    return values


def print_acquisition(paths):
    runs = [read_values(path) for path in paths]
    print(
        "| | acquisition / bare work | with sums of 32 bits | execution / acquisition | peak memory / buffers, acquisition | execution"
        " | peak memory, acquisition | execution |"
    )
    print("|---|---|---|---|---|---|---|---|")
    for pixel_format in runs[0]:
        figures = [run[pixel_format] for run in runs]
        print(
            f"| {pixel_format} | {judge_cost([run['bright_seconds'] / run['bare_seconds'] for run in figures], 1.15)}"
            f" | {show([run['bright_seconds'] / run['bare_wide_seconds'] for run in figures])}"
            f" | {show([run['execute_seconds'] / run['bright_seconds'] for run in figures])}"
            f" | {show([run['bright_of_buffers'] for run in figures])}"
            f" | {show([run['execute_of_buffers'] for run in figures])}"
            f" | {show([run['bright_megabytes'] for run in figures], 0)} MB"
            f" | {show([run['execute_megabytes'] for run in figures], 0)} MB |"
        )


def print_latency(paths):
    runs = [read_values(path) for path in paths]
    print("| | two threads / one: median | 95 % | 99 % | one thread / itself: median | 95 % | 99 % |")
    print("|---|---|---|---|---|---|---|")
    for part in runs[0]:
        size, state = part.split("_")
        cells = []
        for who in ("shared", "alone"):
            for percent in PERCENTILES:
                ratios = [run[part][f"{who}_{percent}"] for run in runs]
                cells.append(judge_cost(ratios, 1.02) if who == "shared" else show(ratios))
        print(f"| {size} Mpx, {STATES[state]} | {' | '.join(cells)} |")


def print_batch(path):
    values = read_values(path)
    print("| | apply, 2 threads / copy | apply, 1 thread / copy | OpenCV / copy | OpenCV / apply, 2 threads |")
    print("|---|---|---|---|---|")
    for part, title in (("one_file", "one file"), ("single_files", "single files")):
        times = values[part]
        print(
            f"| {title} | {judge_cost([times['apply2'] / times['copy']], 1.3)} | {times['apply1'] / times['copy']:.2f}"
            f" | {times['opencv'] / times['copy']:.2f} | {times['opencv'] / times['apply2']:.2f} |"
        )
    few, many = values["memory"]["frames_20"], values["memory"]["frames_2000"]
    print(f"\nPeak memory with 20 frames of 0.08 Mpx {few:.1f} MB, with 2000 {many:.1f} MB.")


def main():
    if len(sys.argv) == 2:
        print_batch(sys.argv[1])
        return
    reports = [read_times(path) for path in sys.argv[1].split(",")]
    kernels = [group(times_by_name) for times_by_name, _ in reports]
    level = reports[0][1]["instruction_level"]
    print(f"Kernels, instruction level {level}, one thread, {len(reports)} runs. (!) misses the goal.\n")
    print_kernels(kernels)
    print("\nTime per pixel, 5 Mpx being 1:\n")
    print_growth(kernels)
    print("\nShared among threads:\n")
    print_threads(kernels)
    print("\nFrames that two threads share beside those of one, in turn:\n")
    print_latency(sys.argv[4].split(","))
    print("\nThe first frame of an acquisition, added into fresh sums; adding into used ones is 1:\n")
    print_fresh(kernels)
    print("\nA frame's way through the module:\n")
    print_frames(sys.argv[2])
    print("\nBright acquisition of 16 frames of 26 Mpx, and its execution:\n")
    print_acquisition(sys.argv[3].split(","))


if __name__ == "__main__":
    main()
