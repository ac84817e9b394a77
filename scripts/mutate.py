#!/usr/bin/env python3
"""Makes the product wrong in one place at a time and looks whether the tests of that folder see it.

  scripts/mutate.py --sample 200 --seed 1              of all folders
  scripts/mutate.py --sample 50 --folder ombrix        of one, which may be given several times; ombrix/kernels too
  scripts/mutate.py --resume build/mutants/results.json --sample 400   what is in the file is not run again
  scripts/mutate.py --resume FILE --survivors          only what survived before is run again

A mutant is one changed operator or constant, a negated condition, a deleted statement, or two swapped arguments; mutants.py
says where they are found. Each is compiled from a changed copy, into the build folder (preset mutants), and what a test
program needs of it is linked; the first failing test ends it. Sources are not touched. Code in headers is not
changed. What nobody can tell from the original is listed, with the reason, in scripts/mutants-equivalent.txt.

Results are written after each mutant to --resume, or build/mutants/results.json, and a table is printed at the end."""

import argparse
import collections
import hashlib
import json
import os
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import time

from mutants import find_mutants

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
DIALOG = "pluginobject/shadingcorrection/"
# The programs that test a folder: the quick ones first.
FOLDERS = {
    "ombrix": ("ombrix_kernels_test", "ombrix_test", "ombrix_bandpool_test", "ombrix_threads_test"),
    DIALOG + "imagecalc": ("imagecalc_test",),
    DIALOG + "process": (
        "process_pieces_test", "process_test", "process_hostfile_test", "process_devicefile_test", "process_vignettingfile_test",
        "process_host_test", "process_device_test", "process_vignetting_test", "process_devicesweep_test", "process_vignettingsweep_test"),
    "frames": ("frames_test", "framefiles_fuzzregression_test", "camera_software_test", "ffc_tool_test"),
    "reference": ("reference_test",),
    "pluginobject": ("pluginobject_base_test", "pluginobject_test", "pluginobject_module_test"),
}
# What is not built here: other systems, and builds without a library.
LEFT_OUT = re.compile(r"_win32\.cpp$|/no(tiff|fits)file\.cpp$")
VERDICTS = ("killed", "timed out", "survived", "equivalent", "not built")
PRISTINE = ".pristine"
MEMORY_LIMIT = 8 << 30


class Build:
    """The build folder: which commands a changed source takes, and putting back what they wrote."""

    def __init__(self, folder):
        self.folder = folder
        self.commands = {}  # program: [(line, set of its words, output)]
        self.replaced = []

    def prepare(self, programs):
        for path, _, names in os.walk(self.folder):
            for name in names:
                if name.endswith(PRISTINE):
                    os.replace(os.path.join(path, name), os.path.join(path, name[:-len(PRISTINE)]))
        run_or_exit(["cmake", "--preset", "mutants", "-S", ROOT, "-B", self.folder, "-DFFC_BUILD_TESTS=ON"])
        run_or_exit(["cmake", "--build", self.folder, "--parallel", str(os.cpu_count()), "--target", *programs])
        for program in programs:
            lines = subprocess.run(["ninja", "-C", self.folder, "-t", "commands", program], check=True, capture_output=True, text=True)
            self.commands[program] = [command for command in map(parse_command, lines.stdout.splitlines()) if command]

    def make(self, program, source, changed, done):
        """Runs what the program needs of a changed source, each command once per mutant; done has the outputs so far."""
        dirty = {source} | {output for output in done if not output.endswith((".so", ".plx"))}
        for line, words, output in self.commands[program]:
            if output in done:
                continue
            if not words & dirty and not any(word in dirty for word in words):
                continue
            self._set_aside(output)
            if source in words:
                line = line.replace(f"-c {source}", f"-iquote {os.path.dirname(source)} -c {changed}")
            if not run_limited(["sh", "-c", line], self.folder, 120).ok:
                return False
            done.add(output)
            if not output.endswith((".so", ".plx")):
                dirty.add(output)
        return True

    def _set_aside(self, output):
        path = os.path.join(self.folder, output)
        if os.path.exists(path):
            os.replace(path, path + PRISTINE)
            self.replaced.append(path)

    def put_back(self):
        while self.replaced:
            path = self.replaced.pop()
            os.replace(path + PRISTINE, path)


def parse_command(line):
    """(line, its words, what it makes), or None for what makes no object, library or program."""
    match = re.search(r" -o (\S+)", line) or re.search(r"\bar q?c? ?(?:qc|rcs?) (\S+)", line)
    return (line, set(line.split()), match.group(1)) if match else None


Outcome = collections.namedtuple("Outcome", "ok timed_out status output")


def run_limited(command, folder, seconds, environment=None):
    """Runs a command in a session of its own, which ends with it, and without the memory of the whole machine."""
    def limit():
        resource.setrlimit(resource.RLIMIT_AS, (MEMORY_LIMIT, MEMORY_LIMIT))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        resource.setrlimit(resource.RLIMIT_FSIZE, (16 << 30, resource.RLIM_INFINITY))

    with subprocess.Popen(command, cwd=folder, env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, start_new_session=True, preexec_fn=limit) as process:
        try:
            output, _ = process.communicate(timeout=seconds)
            timed_out = False
        except subprocess.TimeoutExpired:
            output, timed_out = b"", True
        try:
            os.killpg(process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
    return Outcome(process.returncode == 0 and not timed_out, timed_out, process.returncode, output.decode(errors="replace"))


def run_or_exit(command):
    done = subprocess.run(command, cwd=ROOT, capture_output=True, text=True, check=False)
    if done.returncode != 0:
        sys.exit(done.stdout + done.stderr)


class Tests:
    """The test programs: how each is started, how long it takes, and which of its tests killed mutants of which source."""

    def __init__(self, build):
        self.folder = build.folder
        self.temporary = os.path.join(build.folder, "mutant", "tmp")
        self.commands = self._read_commands(build)
        self.measured = os.path.join(build.folder, "seconds.json")
        self.seconds = {}
        self.killers = collections.defaultdict(list)  # (source, program): names of tests, the last one first

    def _read_commands(self, build):
        listed = subprocess.run(["ctest", "--test-dir", self.folder, "--show-only=json-v1"], check=True, capture_output=True, text=True)
        commands = {}
        for test in json.loads(listed.stdout)["tests"]:
            for i, word in enumerate(test.get("command", ())):
                if os.path.basename(word) in build.commands and os.path.dirname(word).endswith("/bin"):
                    commands.setdefault(os.path.basename(word), test["command"][:i + 1])
        return commands

    def run(self, program, options, seconds):
        shutil.rmtree(self.temporary, ignore_errors=True)
        os.makedirs(self.temporary)
        environment = {**os.environ, "TMPDIR": self.temporary, "GTEST_FAIL_FAST": "1", "GTEST_BRIEF": "1"}
        return run_limited(self.commands[program] + options, self.temporary, seconds, environment)

    def measure(self):
        """Runs each program as it is, which must pass, but for those that have not changed since the last time."""
        known = {}
        if os.path.exists(self.measured):
            with open(self.measured, encoding="utf-8") as file:
                known = json.load(file)
        for program, command in self.commands.items():
            built = os.path.getmtime(command[-1])
            if known.get(program, (0, 0))[0] != built:
                start = time.monotonic()
                outcome = self.run(program, [], 900)
                if not outcome.ok:
                    sys.exit(f"{program} fails without a mutant (status {outcome.status}):\n{outcome.output[-4000:]}")
                known[program] = (built, time.monotonic() - start)
                print(f"{program}: {known[program][1]:.1f} s", flush=True)
            self.seconds[program] = known[program][1]
        with open(self.measured, "w", encoding="utf-8") as file:
            json.dump(known, file)

    def order(self, source, programs):
        """What killed mutants of this source comes first, then what is quick."""
        return sorted(programs, key=lambda program: (-len(self.killers[source, program]), self.seconds[program]))

    def look_at(self, source, program):
        """(verdict, test) of the program that is built: what killed before is tried by itself."""
        limit = max(10.0, 5 * self.seconds[program])
        rounds = [[]]
        if self.killers[source, program] and self.seconds[program] > 0.5:
            rounds.insert(0, ["--gtest_filter=" + ":".join(self.killers[source, program][:20])])
        for options in rounds:
            outcome = self.run(program, options, limit)
            if outcome.ok:
                continue
            failed = re.search(r"^\[  FAILED  \] ([^\s,]+)", outcome.output, re.M)
            name = failed.group(1) if failed else ""
            if name:
                names = self.killers[source, program]
                if name in names:
                    names.remove(name)
                names.insert(0, name)
            return ("timed out" if outcome.timed_out else "killed"), f"{program} {name}".strip()
        return None


def try_mutant(build, tests, mutant, programs):
    """(verdict, test, seconds)."""
    start = time.monotonic()
    source = os.path.join(ROOT, mutant.path)
    changed = os.path.join(build.folder, "mutant", os.path.basename(source))
    with open(source, encoding="utf-8") as file:
        text = file.read()
    with open(changed, "w", encoding="utf-8") as file:
        file.write(text[:mutant.start] + mutant.text + text[mutant.end:])
    done, verdict = set(), None
    try:
        for program in tests.order(mutant.path, programs):
            if not build.make(program, source, changed, done):
                verdict = ("not built", "")
                break
            verdict = tests.look_at(mutant.path, program) if done else None
            if verdict:
                break
    finally:
        build.put_back()
    return (*(verdict or ("survived", "")), time.monotonic() - start)


def read_equivalents():
    """Of each mutant that nobody can tell from the original, (path, before, after): the reason."""
    with open(os.path.join(ROOT, "scripts", "mutants-equivalent.txt"), encoding="utf-8") as file:
        blocks = re.split(r"\n\s*\n", re.sub(r"^#.*\n", "", file.read(), flags=re.M).strip())
    found = {}
    for block in filter(None, blocks):
        path, before, after, *reason = block.split("\n")
        found[path, before.removeprefix("- "), after.removeprefix("+ ")] = " ".join(reason)
    return found


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
    return hashlib.sha1("\n".join((mutant.path, mutant.before, mutant.after)).encode()).hexdigest()[:12]


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
    parser.add_argument("--minutes", type=float, help="no mutant is begun after so long")
    parser.add_argument("--resume", metavar="FILE", help="results to go on with")
    parser.add_argument("--survivors", action="store_true", help="of the results, run again what survived")
    parser.add_argument("--build", default=os.path.join(ROOT, "build", "mutants"), help="the build folder")
    parser.add_argument("--list", action="store_true", help="only print the mutants")
    parser.add_argument("--table", action="store_true", help="only print the table of the results")
    return parser.parse_args()


def choose(options, results):
    """[(folder, mutant)] to run, in the order of the seed, so that what an early end leaves is a sample too."""
    everything = [(folder, mutant) for folder, mutants in find_all(options.folder).items() for mutant in mutants]
    chosen = random.Random(options.seed).sample(everything, min(options.sample or len(everything), len(everything)))
    if options.survivors:
        survived = {key for key, entry in results.items() if entry["verdict"] in ("survived", "equivalent")}
        return [entry for entry in everything if identify(entry[1]) in survived]
    return [entry for entry in chosen if identify(entry[1]) not in results]


def main():
    options = parse_options()
    start = time.monotonic()
    path = options.resume or os.path.join(options.build, "results.json")
    results = {}
    if (options.resume or options.table) and os.path.exists(path):
        with open(path, encoding="utf-8") as file:
            results = {entry["id"]: entry for entry in json.load(file)}
    if options.table:
        print(*make_table(results.values()), sep="\n")
        return 0
    chosen = choose(options, results)
    if options.list:
        for _, mutant in chosen:
            print(f"{mutant.path}:{mutant.line}: {mutant.operator}\n- {mutant.before}\n+ {mutant.after}")
        return 0

    os.makedirs(os.path.join(options.build, "mutant"), exist_ok=True)
    folders = {folder for folder, _ in chosen}
    build = Build(options.build)
    build.prepare([program for folder in FOLDERS if folder in folders for program in FOLDERS[folder]])
    tests = Tests(build)
    tests.measure()
    equivalents = read_equivalents()
    for number, (folder, mutant) in enumerate(chosen):
        if options.minutes and time.monotonic() - start > 60 * options.minutes:
            break
        if (mutant.path, mutant.before, mutant.after) in equivalents:
            verdict, by, seconds = "equivalent", "", 0.0
        else:
            verdict, by, seconds = try_mutant(build, tests, mutant, FOLDERS[folder])
        results[identify(mutant)] = {
            "id": identify(mutant), "folder": folder, "path": mutant.path, "line": mutant.line, "operator": mutant.operator,
            "before": mutant.before, "after": mutant.after, "verdict": verdict, "by": by, "seconds": round(seconds, 1)}
        with open(path, "w", encoding="utf-8") as file:
            json.dump(list(results.values()), file, indent=1)
        print(f"{number + 1} of {len(chosen)}, {seconds:.1f} s, {verdict} {by}: {mutant.path}:{mutant.line}: {mutant.operator}", flush=True)
        if verdict == "survived":
            print(f"  - {mutant.before}\n  + {mutant.after}", flush=True)
    print(*make_table(results.values()), sep="\n")
    return 0


if __name__ == "__main__":
    sys.exit(main())
