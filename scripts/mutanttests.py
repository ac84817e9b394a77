"""The test programs that look at mutants: how each is started, how long it takes, and which of its tests found mutants before.
Used by mutate.py."""

import collections
import json
import os
import re
import shutil
import subprocess
import sys
import threading
import time

from mutantbuild import MEMORY_LIMIT, run_limited
from mutantswitch import VARIABLE


class Tests:
    def __init__(self, build):
        self.folder = build.folder
        self.sanitize = build.sanitize
        self.commands = {}      # program: its command
        self.environments = {}  # program: what it needs to find set
        self._read_commands(build)
        self.measured = os.path.join(build.folder, "seconds.json")
        self.seconds = {}
        # (source, program): names of tests, the last one first.
        self.killers = collections.defaultdict(list)
        self.lock = threading.Lock()

    def _read_commands(self, build):
        listed = subprocess.run(["ctest", "--test-dir", self.folder, "--show-only=json-v1"], check=True, capture_output=True, text=True)
        for test in json.loads(listed.stdout)["tests"]:
            for i, word in enumerate(test.get("command", ())):
                program = os.path.basename(word)
                if program in build.commands and os.path.dirname(word).endswith("/bin") and program not in self.commands:
                    self.commands[program] = test["command"][:i + 1]
                    settings = [value for entry in test["properties"] if entry["name"] == "ENVIRONMENT" for value in entry["value"]]
                    self.environments[program] = dict(setting.split("=", 1) for setting in settings)

    def run(self, program, options, seconds, number=0):
        temporary = os.path.join(self.folder, "mutant", f"tmp-{threading.get_ident()}")
        shutil.rmtree(temporary, ignore_errors=True)
        os.makedirs(temporary)
        environment = {**os.environ, **self.environments[program], "TMPDIR": temporary, "GTEST_FAIL_FAST": "1", VARIABLE: str(number)}
        # The address sanitizer takes all addresses there are.
        memory = None if self.sanitize else MEMORY_LIMIT
        outcome = run_limited(self.commands[program] + options, temporary, seconds, environment, memory)
        shutil.rmtree(temporary, ignore_errors=True)
        return outcome

    def measure(self):
        """Runs each program as it is, which must pass, but for those that have not changed since the last time."""
        known = {}
        if os.path.exists(self.measured):
            with open(self.measured, encoding="utf-8") as file:
                known = json.load(file)
        for program, command in self.commands.items():
            built = os.path.getmtime(command[-1])
            if known.get(program, (0, 0))[0] != built:
                before, start = os.times(), time.monotonic()
                outcome = self.run(program, [], 900)
                if not outcome.ok:
                    sys.exit(f"{program} fails without a mutant (status {outcome.status}):\n{outcome.output[-4000:]}")
                after = os.times()
                used = sum(after[2:4]) - sum(before[2:4])
                known[program] = (built, used)
                print(f"{program}: {used:.1f} s of a processor, {time.monotonic() - start:.1f} s", flush=True)
            self.seconds[program] = known[program][1]
        with open(self.measured, "w", encoding="utf-8") as file:
            json.dump(known, file)

    def remember(self, source, by):
        """Which test found a mutant: it is tried first with the next one of this source."""
        program, _, name = by.partition(" ")
        if name:
            with self.lock:
                names = self.killers[source, program]
                if name in names:
                    names.remove(name)
                names.insert(0, name)

    def plan(self, source, programs):
        """[(program, options)]: what found mutants of this source before by itself, then all, the quick programs first."""
        with self.lock:
            killers = {program: list(self.killers[source, program]) for program in programs}
        known = sorted((program for program in programs if killers[program] and self.seconds[program] > 0.3),
                       key=lambda program: -len(killers[program]))
        order = sorted(programs, key=lambda program: (not killers[program], self.seconds[program]))
        return [(program, ["--gtest_filter=" + ":".join(killers[program][:12])]) for program in known] + [(program, []) for program in order]

    def look_at(self, source, program, options, number):
        """(verdict, by whom) of one run of a program with the mutant of that number; None when nothing was seen."""
        outcome = self.run(program, options, 4 + 4 * self.seconds[program], number)
        if outcome.ok:
            return None
        # Or the program ended in the last that ran.
        names = re.findall(r"^\[  FAILED  \] ([^\s,]+)", outcome.output, re.M)[:1] or re.findall(r"^\[ RUN      \] (\S+)", outcome.output, re.M)[-1:]
        by = " ".join([program, *names])
        self.remember(source, by)
        return ("timed out" if outcome.timed_out else "killed"), by
