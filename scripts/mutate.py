#!/usr/bin/env python3
"""Makes the product wrong in one place at a time and looks whether the tests of that folder see it.

  scripts/mutate.py --sample 200 --seed 1              of all folders
  scripts/mutate.py --sample 50 --folder ombrix        of one, which may be given several times; ombrix/kernels too
  scripts/mutate.py --resume build/mutants/results.json --sample 400   what is in the file is not run again
  scripts/mutate.py --resume FILE --survivors          only what survived before is run again
  scripts/mutate.py --resume FILE --survivors --sanitize     the same with the address sanitizer, as the suite runs too

A mutant is one changed operator or constant, a negated condition, a deleted statement, or two swapped arguments; mutants.py
says where they are found. All that stand in functions are compiled at once, in a copy of the project (preset mutants), and an
environment variable chooses one when a test program starts (mutantswitch.py, mutantbuild.py); so one takes as long as the
tests that look at it. Those outside of functions are compiled one after the other, at the end. The first failing test
ends a mutant, and is the first to see the next one of the same source (mutanttests.py). Sources are not touched. Code in
headers is not changed. What nobody can tell from the original is listed, with the reason, in scripts/mutants-equivalent.txt.

Results are written after each mutant to --resume, or build/mutants/results.json, and a table is printed at the end."""

import argparse
import collections
import concurrent.futures
import hashlib
import json
import os
import random
import re
import subprocess
import sys
import threading
import time

from mutantbuild import ROOT, Build
from mutants import find_mutants
from mutanttests import Tests

DIALOG = "pluginobject/shadingcorrection/"
# The programs that test a folder: the quick ones first.
FOLDERS = {
    "ombrix": ("ombrix_kernels_test", "ombrix_test", "ombrix_bandpool_test", "ombrix_threads_test", "ombrix_unload_test"),
    DIALOG + "imagecalc": ("imagecalc_test",),
    DIALOG + "process": (
        "process_pieces_test", "process_test", "process_file_test", "process_host_test", "process_device_test",
        "process_vignetting_test", "process_devicesweep_test", "process_vignettingsweep_test"),
    "frames": ("frames_test", "framefiles_fuzzregression_test"),
    "reference": ("reference_test",),
    "pluginobject": ("pluginobject_base_test", "pluginobject_test", "pluginobject_module_test"),
}
# What is not built here: other systems, and builds without a library.
LEFT_OUT = re.compile(r"_win32\.cpp$|/no(tiff|fits)file\.cpp$")
VERDICTS = ("killed", "timed out", "survived", "equivalent", "not built")


def try_mutant(build, tests, mutant, programs):
    """(verdict, test, seconds)."""
    start = time.monotonic()
    number, done = get_number(mutant), set()
    verdict = None
    if number in build.rejected:
        return "not built", "", 0.0
    try:
        for program, options in tests.plan(mutant.path, programs):
            if number not in build.switched:
                if not build.make_alone(program, mutant, done):
                    verdict = ("not built", "")
                    break
                if not done:
                    continue
            verdict = tests.look_at(mutant.path, program, options, number)
            if verdict:
                break
    finally:
        build.put_back()
    return (*(verdict or ("survived", "")), time.monotonic() - start)


def read_equivalents():
    """Of each mutant that nobody can tell from the original, (path, before, after): the reason. After "*" is any change."""
    with open(os.path.join(ROOT, "scripts", "mutants-equivalent.txt"), encoding="utf-8") as file:
        blocks = re.split(r"\n\s*\n", re.sub(r"^#.*\n", "", file.read(), flags=re.M).strip())
    found = {}
    for block in filter(None, blocks):
        path, before, after, *reason = block.split("\n")
        found[path, before.removeprefix("- "), after.removeprefix("+ ")] = " ".join(reason)
    return found


def find_gone(equivalents):
    """The lines among them that are in their sources no more."""
    lines = collections.defaultdict(set)
    for path, before, _ in equivalents:
        lines[path].add(before)
    gone = []
    for path, befores in sorted(lines.items()):
        text = ""
        if os.path.exists(os.path.join(ROOT, path)):
            with open(os.path.join(ROOT, path), encoding="utf-8") as file:
                text = " ".join(file.read().split())
        gone += [f"{path}: {before}" for before in sorted(befores) if before not in text]
    return gone


def find_all(wanted):
    """{folder: [mutant]} of the sources that git knows."""
    names = subprocess.run(["git", "ls-files", "*.cpp"], cwd=ROOT, check=True, capture_output=True, text=True).stdout.split()
    found = collections.defaultdict(list)
    for name in names:
        folder = max((folder for folder in FOLDERS if name.startswith(folder + "/")), key=len, default=None)
        # The plug-in object is the files of its own folder alone.
        if folder is None or (folder == "pluginobject" and os.path.dirname(name) != folder) or LEFT_OUT.search(name):
            continue
        if not wanted or any(name.startswith(prefix.rstrip("/")) for prefix in wanted):
            with open(os.path.join(ROOT, name), encoding="utf-8") as file:
                found[folder] += find_mutants(name, file.read())
    return found


def identify(mutant):
    names = (mutant.path, mutant.before, mutant.after) + ((str(mutant.nth),) if mutant.nth else ())
    return hashlib.sha1("\n".join(names).encode()).hexdigest()[:12]


def get_number(mutant):
    return int(identify(mutant), 16)


def make_table(results):
    """The lines of a table by folder."""
    lines = ["| folder | mutants | " + " | ".join(VERDICTS) + " | of those that matter, found |", "|---" * (len(VERDICTS) + 3) + "|"]
    for folder in [*FOLDERS, None]:
        counts = collections.Counter(entry["verdict"] for entry in results if folder in (None, entry["folder"]))
        found = counts["killed"] + counts["timed out"]
        mattering = found + counts["survived"]
        if mattering:
            lines.append(f"| {f'`{folder}/`' if folder else 'all of these'} | {sum(counts.values())} | "
                         + " | ".join(str(counts[verdict]) for verdict in VERDICTS) + f" | {100 * found / mattering:.1f} % |")
    return lines


def parse_options():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--sample", type=int, help="so many of all, chosen by the seed; else all")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--folder", action="append", help="only sources that begin with this path")
    parser.add_argument("--minutes", type=float, help="no mutant is begun so long after the build")
    parser.add_argument("--resume", metavar="FILE", help="results to go on with")
    parser.add_argument("--survivors", action="store_true", help="of the results, run again what survived")
    parser.add_argument("--sanitize", action="store_true", help="with the address sanitizer, which sees what is read beside an array")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="so many mutants at a time")
    parser.add_argument("--build", default=os.path.join(ROOT, "build", "mutants"), help="the build folder")
    parser.add_argument("--list", action="store_true", help="only print the mutants")
    parser.add_argument("--table", action="store_true", help="only print the table of the results")
    return parser.parse_args()


def choose(options, results):
    """[(folder, mutant)] of the sample, in the order of the seed, so that what an early end leaves is a sample too; and those
    of it that are to run."""
    everything = [(folder, mutant) for folder, mutants in find_all(options.folder).items() for mutant in mutants]
    sample = random.Random(options.seed).sample(everything, min(options.sample or len(everything), len(everything)))
    if options.survivors:
        survived = {key for key, entry in results.items() if entry["verdict"] in ("survived", "equivalent")}
        again = [entry for entry in everything if identify(entry[1]) in survived]
        return ([] if options.sanitize else sample), again
    return sample, [entry for entry in sample if identify(entry[1]) not in results]


class Results:
    """What is known, in a file that is whole at any time."""

    def __init__(self, path, read):
        self.path = path
        self.entries = {}
        self.lock = threading.Lock()
        if read and os.path.exists(path):
            with open(path, encoding="utf-8") as file:
                self.entries = {entry["id"]: entry for entry in json.load(file)}

    def add(self, folder, mutant, verdict, by, seconds):
        entry = {"id": identify(mutant), "folder": folder, "path": mutant.path, "line": mutant.line, "operator": mutant.operator,
                 "before": mutant.before, "after": mutant.after, "verdict": verdict, "by": by, "seconds": round(seconds, 1)}
        with self.lock:
            self.entries[entry["id"]] = entry
            with open(self.path + ".new", "w", encoding="utf-8") as file:
                json.dump(list(self.entries.values()), file, indent=1)
            os.replace(self.path + ".new", self.path)
            print(f"{seconds:.1f} s, {verdict} {by}: {mutant.path}:{mutant.line}: {mutant.operator}", flush=True)
            if verdict == "survived":
                print(f"  - {mutant.before}\n  + {mutant.after}", flush=True)


def run_all(options, sample, chosen, results, equivalents):
    """The switched ones side by side; those that are built alone, which change the programs, one after the other at the end."""
    programs = {folder: FOLDERS[folder] for folder in FOLDERS if any(folder == other for other, _ in chosen)}
    build = Build(options.build, options.sanitize)
    build.prepare([name for names in programs.values() for name in names], {get_number(mutant): mutant for _, mutant in sample + chosen})
    tests = Tests(build)
    tests.measure()
    for entry in results.entries.values():
        if entry["verdict"] == "killed":
            tests.remember(entry["path"], entry["by"])
    start = time.monotonic()

    def run_one(entry):
        folder, mutant = entry
        if any((mutant.path, mutant.before, after) in equivalents for after in (mutant.after, "*")):
            results.add(folder, mutant, "equivalent", "", 0.0)
        elif not options.minutes or time.monotonic() - start < 60 * options.minutes:
            results.add(folder, mutant, *try_mutant(build, tests, mutant, programs[folder]))

    def is_built(mutant):
        return get_number(mutant) in build.switched | build.rejected

    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        try:
            list(pool.map(run_one, [entry for entry in chosen if is_built(entry[1])]))
        finally:
            pool.shutdown(cancel_futures=True)
    for entry in chosen:
        if not is_built(entry[1]):
            run_one(entry)


def main():
    options = parse_options()
    results = Results(options.resume or os.path.join(options.build, "results.json"), options.resume or options.table)
    if not options.table:
        equivalents = read_equivalents()
        gone = find_gone(equivalents)
        if gone:
            sys.exit("\n".join(["scripts/mutants-equivalent.txt has lines that are in no source any more:", *gone]))
        sample, chosen = choose(options, results.entries)
        if options.list:
            for _, mutant in chosen:
                print(f"{mutant.path}:{mutant.line}: {mutant.operator}\n- {mutant.before}\n+ {mutant.after}")
            return 0
        os.makedirs(options.build, exist_ok=True)
        run_all(options, sample, chosen, results, equivalents)
    print(*make_table(results.entries.values()), sep="\n")
    return 0


if __name__ == "__main__":
    sys.exit(main())
