#!/usr/bin/env python3
"""Writes docs/quality.md from what the last runs left in build/: quality-page.py [--check] [FOLDER ...]

  tests         ./test.sh, ./test.sh asan, ./test.sh tsan, ./test.sh --windows
  fuzz targets  scripts/fuzz.sh [SECONDS]
  coverage      scripts/coverage.sh
  mutants       ./test.sh --mutants, scripts/mutate.py
  memcheck      scripts/valgrind.sh
  packages      scripts/reproducible.sh [--windows], scripts/installed.sh

.ci/run does the first two. Nothing is typed in by hand: of a part that has not been run, or not as a whole, the page keeps what
it said, with a word. FOLDERS are the build folders to look in, one after another, where a part was run in another copy
of the sources.
With --check the page is printed and not written."""

import collections
import json
import os
import re
import subprocess
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
sys.path.insert(0, os.path.join(ROOT, "scripts"))
import mutate  # noqa: E402

PRESETS = (
    ("release", "optimised"),
    ("debug", "not optimised"),
    ("asan", "address and undefined-behaviour sanitizers"),
    ("tsan", "thread sanitizer"),
    ("windows-mingw", "64-bit Windows, under Wine"),
)
BUILDS = [os.path.join(ROOT, "build")]


def find(*path):
    """Where the first of the build folders has it; None where none has."""
    paths = (os.path.join(folder, *path) for folder in BUILDS)
    return next((name for name in paths if os.path.exists(name)), None)


def read(*path):
    name = find(*path)
    if name is None:
        return None
    with open(name, encoding="utf-8", errors="replace") as file:
        return file.read()


def run(*command):
    return subprocess.run(command, cwd=ROOT, check=True, capture_output=True, text=True).stdout


def count_registered(folder):
    """How many tests the build has; None where it cannot tell."""
    try:
        match = re.search(r"Total Tests: (\d+)", run("ctest", "--test-dir", folder, "-N"))
    except (subprocess.CalledProcessError, FileNotFoundError):
        return None
    return int(match.group(1)) if match else None


def describe_tests(preset, name):
    """A line of the table of tests, or None when there was no run of all of them. ./test.sh keeps the log of such a run."""
    log = read(preset, "all-tests.log") or read(preset, "Testing", "Temporary", "LastTest.log")
    if log is None:
        return None
    entries = len(re.findall(r"^\d+/\d+ Test: ", log, re.M))
    passed = len(re.findall(r"^Test Passed\.", log, re.M))
    cases = collections.Counter(re.findall(r"^\[ +(OK|FAILED|SKIPPED) +\] \S+ \(\d+ ms\)", log, re.M))
    if entries < (count_registered(find(preset)) or entries + 1):
        return None
    day = re.search(r"^Start testing: (.*)$", log, re.M)
    return (f"| {name} | {passed} of {entries} | {cases['OK']} | {cases['FAILED']} | {cases['SKIPPED']} | "
            f"{day.group(1) if day else ''} |")


def describe_all_tests():
    rows = [row for row in (describe_tests(*preset) for preset in PRESETS) if row]
    if not rows:
        return ["No run of all tests."]
    return ["| build | entries passed | cases passed | failed | skipped | when |",
            "|---|---|---|---|---|---|", *rows, "",
            "An entry is a program with a sanitizer or under Wine, else a single case. What is skipped says why."]


def read_tally():
    """Of each target the seconds of processor time and the inputs of all its runs."""
    tally = collections.defaultdict(lambda: [0.0, 0])
    for line in (read("fuzz", "tally") or "").splitlines():
        target, seconds, executions = line.split()
        tally[target][0] += float(seconds)
        tally[target][1] += int(executions)
    return tally


def describe_fuzz_run(log):
    """The last run of a target, as a cell of the table."""
    executions = re.search(r"^stat::number_of_executed_units: *(\d+)", log or "", re.M)
    if not executions:
        return "not here"
    edges = re.findall(r" cov: (\d+)", log)
    seconds = re.search(r"^Done \d+ runs in (\d+) second", log, re.M)
    return f"{int(executions.group(1)):,} in {seconds.group(1)} s, {edges[-1]} edges" if edges and seconds else "ended early"


def describe_fuzzing():
    folder = find("fuzz")
    logs = {name[:-4]: read("fuzz", name) for name in os.listdir(folder) if name.endswith(".log")} if folder else {}
    tally = read_tally()
    names = sorted(set(tally) | {name for name, log in logs.items() if "INFO: Seed:" in log})
    if not names:
        return ["No run."]
    rows = [f"| {name} | {describe_fuzz_run(logs.get(name))} | {tally[name][1]:,} | {tally[name][0] / 60:.0f} |" for name in names]
    return ["All runs are those that found nothing, each beginning with what the former ones had kept.", "",
            "| target | last run | inputs, all runs | minutes of processor time, all runs |", "|---|---|---|---|", *rows]


def describe_coverage():
    table = read("coverage", "table")
    if table is None:
        return ["No run."]
    left_out = re.search(r"(\d+) functions have mismatched data", read("coverage", "llvm-cov.log") or "")
    lines = ["By all tests but those of packages and of endurance, and those of the tool `ffc` whose calls to the disk fail. Branches are conditions and each of their two outcomes; MC/DC are conditions "
             "that have been seen to decide by themselves.", "", *re.findall(r"^\|.*", table, re.M)]
    if left_out:
        lines += ["", f"Of {left_out.group(1)} functions in these programs and libraries, tests included, the counts could not be "
                  "assigned; they are left out."]
    return lines


def describe_mutants():
    text = read("mutants", "results.json")
    if text is None:
        return ["No run."]
    lines = mutate.make_table(json.loads(text))
    return ["One operator, constant, condition, statement or pair of arguments changed at a time, in places chosen by seed. Equivalent are "
            "those that nobody can tell from the original: `scripts/mutants-equivalent.txt` has the reasons.", "", *lines]


def describe_memcheck():
    folder = find("valgrind")
    rows = [read("valgrind", name).strip() for name in sorted(os.listdir(folder)) if name.endswith(".row")] if folder else []
    return ["| program | seconds | errors | tests |", "|---|---|---|---|", *rows] if rows else ["No run."]


def describe_packages():
    lines = []
    for system in ("linux", "windows"):
        sums = [read("reproducible", system, folder, "build", "packages", "SHA256SUMS")
                for folder in ("first", "another/folder-of-another-name")]
        if all(sums):
            verdict = "are the same, byte for byte" if sums[0] == sums[1] else "DIFFER"
            lines += [f"Two builds for {system.capitalize()} in different folders, by different users, in different time zones and "
                      f"languages {verdict}:", "", "```", *sums[0].strip().split("\n"), "```", ""]
    installed = read("installed", "result")
    if installed:
        lines += ["In a Debian of its own, started from the menu entry and from the path: " + installed.strip() + "."]
    return lines or ["No run."]


def count_lines(*patterns):
    files = run("git", "ls-files", "--", *patterns).split()
    count = 0
    for name in files:
        with open(os.path.join(ROOT, name), encoding="utf-8", errors="replace") as file:
            count += sum(1 for _ in file)
    return count


EARLIER = "From an earlier run than the rest of the page."


def keep_earlier(title, lines):
    """What the page says already of a part that has not been run here."""
    if not lines[0].startswith("No run"):
        return lines
    with open(os.path.join(ROOT, "docs", "quality.md"), encoding="utf-8") as file:
        former = re.search(rf"^## {re.escape(title)}\n\n(.*?)\n(?=^## |\Z)", file.read(), re.M | re.S)
    kept = former.group(1).strip().split("\n") if former else lines
    if kept[0].startswith("No run") or kept[0] == EARLIER:
        return kept
    return [EARLIER, "", *kept]


def make_page():
    tests = count_lines("tests/*.cpp", "tests/*.h")
    everything = count_lines("*.cpp", "*.h")
    made_of = run("git", "log", "-1", "--format=%h of %cs").strip()
    page = ["# Quality", "",
            f"Made by `scripts/quality-page.py` from the last runs on one machine, at {made_of}; run them again and compare. "
            f"{everything - tests:,} lines of C++, and {tests:,} of tests.", ""]
    for title, describe in (("Tests", describe_all_tests), ("Fuzz targets", describe_fuzzing), ("Coverage", describe_coverage),
                            ("Mutants", describe_mutants), ("Memcheck", describe_memcheck), ("Packages", describe_packages)):
        page += [f"## {title}", "", *keep_earlier(title, describe()), ""]
    return "\n".join(page)


def main():
    folders = [argument for argument in sys.argv[1:] if argument != "--check"]
    if folders:
        BUILDS[:] = [os.path.abspath(folder) for folder in folders]
    page = make_page()
    if "--check" in sys.argv[1:]:
        print(page)
        return
    with open(os.path.join(ROOT, "docs", "quality.md"), "w", encoding="utf-8") as file:
        file.write(page)


if __name__ == "__main__":
    main()
