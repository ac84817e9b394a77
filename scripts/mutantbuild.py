"""The build of the mutants: a copy of the project in which they are switched, and those that are built by themselves. Used by
mutate.py."""

import collections
import hashlib
import json
import os
import re
import subprocess
import sys
import time

from mutantswitch import switch_mutants

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
PRISTINE = ".pristine"
LIBRARIES = (".so", ".plx")
# Of a program under test: bytes, and seconds with next to no work after which it is stuck.
MEMORY_LIMIT = 8 << 30
STUCK_AFTER = 15
LOOK_EVERY = 3
# What a busy machine makes of seconds of a processor.
SLOWEST_START, SLOWEST_PACE = 60, 10

Outcome = collections.namedtuple("Outcome", "ok timed_out status output")


def run_or_exit(command, folder=ROOT):
    done = subprocess.run(command, cwd=folder, capture_output=True, text=True, check=False)
    if done.returncode != 0:
        sys.exit(done.stdout[-10000:] + done.stderr[-10000:])
    return done.stdout


def measure_session(session):
    """(clock ticks of all its processes, whether one of their threads wants a processor)."""
    ticks, running = 0, False
    for name in filter(str.isdigit, os.listdir("/proc")):
        try:
            with open(f"/proc/{name}/stat", encoding="utf-8", errors="replace") as file:
                fields = file.read().rpartition(")")[2].split()
            if int(fields[3]) != session:
                continue
            ticks += int(fields[11]) + int(fields[12])
            for thread in os.listdir(f"/proc/{name}/task"):
                with open(f"/proc/{name}/task/{thread}/stat", encoding="utf-8", errors="replace") as file:
                    running = running or file.read().rpartition(")")[2].split()[0] in "RD"
        except OSError:
            pass
    return ticks, running


def run_limited(command, folder, seconds, environment=None, memory=MEMORY_LIMIT):
    """Runs a command in a session of its own, which ends with it: with so much time of the processor (a busy machine does not
    count), without the memory of the whole machine, and not for ever when it waits for nothing."""
    limits = f"ulimit -c 0; ulimit -t {int(seconds) + 1}; ulimit -v {memory >> 10 if memory else 'unlimited'}; ulimit -f {16 << 21}; exec \"$@\""
    with subprocess.Popen(["sh", "-c", limits, "sh", *command], cwd=folder, env=environment, stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, start_new_session=True) as process:
        output, stuck, before, idle = b"", False, 0, 0
        latest = time.monotonic() + SLOWEST_START + SLOWEST_PACE * seconds
        while True:
            try:
                output, _ = process.communicate(timeout=LOOK_EVERY)
                break
            except subprocess.TimeoutExpired:
                ticks, running = measure_session(process.pid)
                busy = running or ticks - before > LOOK_EVERY * os.sysconf("SC_CLK_TCK") / 10
                idle = 0 if busy else idle + LOOK_EVERY
                before = ticks
                if idle >= STUCK_AFTER or time.monotonic() > latest:
                    stuck = True
                    kill_session(process.pid)
        kill_session(process.pid)
    timed_out = stuck or process.returncode in (-24, -9)
    return Outcome(process.returncode == 0, timed_out, process.returncode, output.decode(errors="replace"))


def kill_session(session):
    try:
        os.killpg(session, 9)
    except ProcessLookupError:
        pass


def parse_command(line):
    """(line, its words, what it makes), or None for what makes no object, library or program."""
    match = re.search(r" -o (\S+)", line) or re.search(r"\bar q?c? ?(?:qc|rcs?) (\S+)", line)
    return (line, set(line.split()), match.group(1)) if match else None


def get_digest(path):
    with open(os.path.join(ROOT, path), "rb") as file:
        return hashlib.sha1(file.read()).hexdigest()


class Build:
    """The copy of the project and its build folder, which is where the preset has it."""

    def __init__(self, folder, sanitize):
        self.sanitize = sanitize
        self.tree = os.path.join(folder, "sanitized" if sanitize else "source")
        self.folder = os.path.join(self.tree, "build", "mutants")
        self.switched = set()  # numbers of the mutants that are built already
        self.rejected = set()  # and of those that the compiler refuses
        self.commands = {}     # program: [(line, set of its words, output)]
        self.replaced = []

    def prepare(self, programs, mutants):
        """Builds the programs with all mutants, {number: mutant}, that can be switched."""
        self._restore()
        os.makedirs(self.folder, exist_ok=True)
        known = self._read_refused(mutants)
        self.rejected = {number for number, alone in known.items() if not alone}
        while True:
            self._write_tree({number: mutant for number, mutant in mutants.items() if number not in known})
            run_or_exit(["cmake", "--preset", "mutants", "-DFFC_BUILD_TESTS=ON",
                          f"-DFFC_SANITIZE={'address,undefined' if self.sanitize else ''}"], self.tree)
            command = ["cmake", "--build", self.folder, "--parallel", str(os.cpu_count()), "--target", *programs, "--", "-k", "0"]
            done = subprocess.run(command, capture_output=True, text=True, check=False)
            if done.returncode == 0:
                break
            wrong = self._find_refused(done.stdout, set(mutants) - set(known))
            if not wrong:
                sys.exit(done.stdout[-10000:] + done.stderr)
            print(f"{len(wrong)} mutants do not compile", flush=True)
            known.update(wrong)
            self._save_refused(mutants, known)
        for program in programs:
            lines = run_or_exit(["ninja", "-C", self.folder, "-t", "commands", program]).splitlines()
            self.commands[program] = [command for command in map(parse_command, lines) if command]

    def _find_refused(self, output, numbers):
        """{number: whether it has to be tried alone}: what is wrong where a mutant asks for it may be so only among the others."""
        wrong = {int(number) for number in re.findall(r"^mutant_(\d+):\d+:\d+: (?:fatal )?error", output, re.M)} & numbers
        self.rejected |= wrong
        asking = {int(number) for number in re.findall(r"\bmutant_(\d+):\d+", output)} & numbers
        return dict.fromkeys(wrong, False) if wrong else dict.fromkeys(asking, True)

    def _read_refused(self, mutants):
        """What the compiler did not take the last time, of sources that are as they were."""
        path = os.path.join(self.folder, "refused.json")
        if not os.path.exists(path):
            return {}
        with open(path, encoding="utf-8") as file:
            return {number: alone for number, alone, digest in json.load(file)
                    if number in mutants and digest == get_digest(mutants[number].path)}

    def _save_refused(self, mutants, known):
        with open(os.path.join(self.folder, "refused.json"), "w", encoding="utf-8") as file:
            json.dump([(number, alone, get_digest(mutants[number].path)) for number, alone in known.items()], file)

    def _restore(self):
        for path, _, names in os.walk(self.folder):
            for name in names:
                if name.endswith(PRISTINE):
                    os.replace(os.path.join(path, name), os.path.join(path, name[:-len(PRISTINE)]))

    def _write_tree(self, mutants):
        """Copies what has changed, so that only that is compiled."""
        by_path = collections.defaultdict(dict)
        for number, mutant in mutants.items():
            by_path[mutant.path][number] = mutant
        listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=ROOT, check=True,
                                capture_output=True, text=True).stdout
        names = {name for name in listed.split("\0") if name and os.path.isfile(os.path.join(ROOT, name))}
        self.switched = set()
        for name in names:
            with open(os.path.join(ROOT, name), "rb") as file:
                content = file.read()
            if name in by_path:
                text, numbers = switch_mutants(name, content.decode(), by_path[name])
                self.switched |= numbers
                content = text.encode()
            self._write(name, content)
        for path, _, files in os.walk(self.tree):
            for name in files:
                relative = os.path.relpath(os.path.join(path, name), self.tree)
                if relative not in names and not relative.startswith("build/"):
                    os.remove(os.path.join(path, name))

    def _write(self, name, content):
        path = os.path.join(self.tree, name)
        if os.path.exists(path):
            with open(path, "rb") as file:
                if file.read() == content:
                    return
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(content)
        os.chmod(path, os.stat(os.path.join(ROOT, name)).st_mode)

    def make_alone(self, program, mutant, done):
        """Runs what the program needs of a source with this mutant alone, each command once; done has the outputs so far."""
        source = os.path.join(self.tree, mutant.path)
        changed = os.path.join(self.folder, "mutant", os.path.basename(source))
        if not done:
            with open(os.path.join(ROOT, mutant.path), encoding="utf-8") as file:
                text = file.read()
            os.makedirs(os.path.dirname(changed), exist_ok=True)
            with open(changed, "w", encoding="utf-8") as file:
                file.write(text[:mutant.start] + mutant.text + text[mutant.end:])
        dirty = {source} | {output for output in done if not output.endswith(LIBRARIES)}
        for line, words, output in self.commands[program]:
            if output in done or not words & dirty:
                continue
            self._set_aside(output)
            if source in words:
                line = line.replace(f"-c {source}", f"-iquote {os.path.dirname(source)} -c {changed}")
            if not run_limited(["sh", "-c", line], self.folder, 120).ok:
                return False
            done.add(output)
            if not output.endswith(LIBRARIES):
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
