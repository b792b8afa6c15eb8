"""The work of mutate.sh, which describes it. Runs in the copy of the tree that it mutates."""
import argparse
import json
import os
import queue
import re
import signal
import subprocess
import sys
import tempfile
import time
from concurrent.futures import ThreadPoolExecutor, as_completed
from contextlib import contextmanager
from dataclasses import dataclass, field
from itertools import islice

from mutations import drawn, written

BUILD = "build/dev"
QUICK = 2.0  # seconds
FRAME = {"initTestCase", "cleanupTestCase"}
LABELS = [("app/settings/", "settings"), ("app/", "window"), ("db/manager/", "manager"), ("db/caches/", "manager"),
          ("db/", "sql"), ("core/providers/", "providers"), ("core/records/", "records"),
          ("models/contents/", "contents"), ("core/", "core"), ("models/", "core"), ("fileops/", "fileops"),
          ("ui/", "ui")]
SERVERS = queue.Queue()  # each for one test at a time: it has one database


# ------------------------------------------------------------------ the one build

def refused(mutations, output):
    """The mutations that the compiler did not take: those on the lines that it names, or the whole file's."""
    result = []
    for folder, name in set(re.findall(r"^FAILED: (\S*?)CMakeFiles/\S+?\.dir/(\S+\.cpp)\.o", output, re.M)):
        file = os.path.normpath(folder + name.replace("__", ".."))
        own = [m for m in mutations if m.file == file]
        named = re.findall(rf"{re.escape(file)}:(\d+):\d+: (?:error|.*required from)", output)
        result += [m for m in own if any(m.first <= int(line) <= m.last for line in named)] or own
    return result


def built(count, source):
    """Draws so many mutations and builds all of them into the programs, but for those that do not compile."""
    mutations, touched = [], set()
    while True:
        new = list(islice(source, max(0, count - len(mutations)) * 9 // 8))
        mutations += new
        written(mutations, touched | {m.file for m in new})
        done = subprocess.run(["cmake", "--build", BUILD, "--", "-k", "0", "-j2"], capture_output=True, text=True)
        if done.returncode == 0:
            return mutations[:count]
        dropped = refused(mutations, done.stdout)
        if not dropped:
            sys.exit(done.stdout[-4000:])
        for mutation in dropped:
            print(f"dropped   {place(mutation)}", file=sys.stderr)
        touched = {m.file for m in dropped}
        mutations = [m for m in mutations if m not in dropped]


# ------------------------------------------------------------------ test programs

@dataclass
class Test:
    name: str
    command: list
    environment: dict
    labels: list
    is_shared: bool
    seconds: float = 0
    functions: dict = field(default_factory=dict)  # name to seconds
    reached: dict = field(default_factory=dict)    # number of a mutant to names of functions
    passes: dict = field(default_factory=dict)     # selection of functions to bool

    def selection(self, mutation):
        """The functions that reach a mutant, the quickest first, or none when all are to run."""
        names = self.reached[mutation.number]
        # What is computed once a process may be noticed by others than the first.
        is_once = "static " in mutation.line
        if is_once or not names <= {*self.functions, *FRAME} or names <= FRAME:
            return ()
        return tuple(sorted(names - FRAME, key=self.functions.get))

    def cost(self, selection):
        return sum(self.functions[name] for name in selection) if selection else self.seconds

    @contextmanager
    def server(self):
        """Keeps a server for this test, where it wants one."""
        free = SERVERS.get() if self.is_shared else None
        try:
            yield {"VORNA_TEST_PG": free} if free else {}
        finally:
            if free:
                SERVERS.put(free)

    def run(self, limit, selection=(), mutant=None, extra=(), **environment):
        """Runs until the first failure: "passed", "failed" or "hung", with what was said of it."""
        values = {**os.environ, **self.environment, **environment}
        if mutant:
            values["LC_VORNA_MUTANT"] = str(mutant)
        with tempfile.TemporaryFile("w+", errors="replace") as said:
            started, state = time.monotonic(), None
            child = subprocess.Popen([*self.command, *extra, *selection], env=values, cwd=BUILD + "/tests",
                                     stdin=subprocess.DEVNULL, stdout=said, stderr=said, process_group=0)
            while state is None:
                try:
                    state = "failed" if child.wait(0.2) else "passed"
                except subprocess.TimeoutExpired:
                    said.seek(0)
                    if re.search(r"^(FAIL!|XPASS)", said.read(), re.M):
                        state = "failed"
                    elif time.monotonic() - started > limit:
                        state = "hung"
            self.end(child)
            said.seek(0)
            text = said.read()
        reason = re.search(r"^(FAIL!|XPASS|QFATAL).*", text, re.M)
        return state, reason[0] if reason else f"{state}, code {child.returncode}"

    @staticmethod
    def end(child):
        """Ends a program with those that it started."""
        try:
            os.killpg(child.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        child.wait()

    def measure(self):
        """Runs all once, and takes down times and reached mutants."""
        with tempfile.TemporaryDirectory() as folder, self.server() as server:
            report, log = os.path.join(folder, "report"), os.path.join(folder, "log")
            for _ in range(2):
                started = time.monotonic()
                state, reason = self.run(600, extra=("-o", report + ",xml", "-o", "-,txt"), LC_VORNA_MUTANT_LOG=log, **server)
                self.seconds = time.monotonic() - started
                if state == "passed":
                    break
            else:
                sys.exit(f"{self.name} fails without any mutation: {reason}")
            with open(report, encoding="utf-8") as xml:
                for name, ms in re.findall(r'<TestFunction name="(\w+)">.*?<Duration msecs="([\d.]+)"', xml.read(), re.S):
                    if name not in FRAME:
                        self.functions[name] = float(ms) / 1000
            if os.path.exists(log):
                with open(log, encoding="utf-8") as lines:
                    for number, name in (line.split() for line in lines):
                        self.reached.setdefault(int(number), set()).add(name)

    def notices(self, mutation, selection):
        """What the first failure says, or nothing. It counts when the failed function passes without the mutant."""
        limit = 4 * self.seconds + 5
        with self.server() as server:
            for selection in dict.fromkeys((selection, ())):
                state, reason = self.run(limit, selection, mutation.number, **server)
                if state == "passed":
                    return None
                named = re.search(r"::(\w+)\(", reason)
                alone = (named[1],) if named and named[1] in selection else selection
                if state == "hung" or alone not in self.passes:
                    started = time.monotonic()
                    self.passes[alone] = self.run(4 * limit, alone, **server)[0] == "passed"
                    # Slow for want of processors is no hang.
                    longest = 4 * (time.monotonic() - started) + 5
                    if state == "hung" and longest > limit:
                        state, reason = self.run(longest, selection, mutation.number, **server)
                if self.passes[alone]:
                    return None if state == "passed" else reason
        return None


def tests():
    listed = subprocess.run(["ctest", "--test-dir", BUILD, "-E", "^e2e_", "--show-only=json-v1"],
                            check=True, capture_output=True, text=True).stdout
    for test in json.loads(listed)["tests"]:
        values = {entry["name"]: entry["value"] for entry in test["properties"]}
        if os.path.basename(test["command"][0]).startswith("tst_"):
            yield Test(test["name"], test["command"], dict(e.split("=", 1) for e in values.get("ENVIRONMENT", [])),
                       values.get("LABELS", []), "RESOURCE_LOCK" in values)


# ------------------------------------------------------------------ the verdicts

def place(mutation):
    new = f"{mutation.old}  ->  {mutation.new}"
    around = "" if mutation.old in mutation.line and len(mutation.old) > 12 else f"  in  {mutation.line}"
    return f"{mutation.file}:{mutation.first}  {mutation.kind}:  {new}{around}"


def pieces(mutation, programs):
    """What is to run: the quick functions that reach a mutant, a program at a time, before each slow one."""
    label = next((label for start, label in LABELS if mutation.file.startswith(start)), "")
    found = []
    for test in programs:
        selection = test.selection(mutation) if mutation.number in test.reached else None
        if selection is None:
            continue
        quick = tuple(name for name in selection or () if test.functions[name] < QUICK)
        for piece in [quick] * bool(quick) + [(name,) for name in selection if name not in quick] or [()]:
            cost = test.cost(piece)
            found.append((cost > QUICK and piece != quick, label not in test.labels, cost, test.name, test, piece))
    return sorted(found, key=lambda piece: piece[:4])


def verdict(mutation, programs, limit):
    spent, passed = 0, []
    for _, _, cost, name, test, selection in pieces(mutation, programs):
        spent += cost
        if passed and spent > limit:
            passed.append("... and others that were not asked")
            break
        if reason := test.notices(mutation, selection):
            return True, f"caught    {place(mutation)}\n          {name}: {reason}"
        passed.append(f"{name}({' '.join(selection)})")
    return False, f"survived  {place(mutation)}\n          reached by {', '.join(passed) or 'nothing'}"


def main():
    options = argparse.ArgumentParser(prog="mutate.sh")
    options.add_argument("-n", type=int, default=20, metavar="COUNT")
    options.add_argument("-s", type=int, required=True, metavar="SEED")
    options.add_argument("-t", type=float, default=60, metavar="SECONDS")
    options.add_argument("-b", metavar="REVISION")
    options.add_argument("paths", nargs="*")
    options = options.parse_args()
    if not options.b and not options.paths:
        sys.exit("Name a folder, a file, or with -b a revision.")
    print(f"Seed {options.s}, {options.n} mutations", flush=True)
    with open(BUILD + "/compile_commands.json", encoding="utf-8") as commands:
        compiled = {os.path.relpath(entry["file"]) for entry in json.load(commands)}
    mutations = built(options.n, drawn(options.b, options.paths, compiled, options.s))
    programs = list(tests())
    for server in os.environ["VORNA_TEST_PGS"].split():
        SERVERS.put(server)
    with ThreadPoolExecutor(2) as pool, open("build/verdicts.txt", "w", encoding="utf-8") as log:
        list(pool.map(Test.measure, programs))
        print("Built and measured", flush=True)
        caught = 0
        for done in as_completed(pool.submit(verdict, mutation, programs, options.t) for mutation in mutations):
            is_caught, text = done.result()
            caught += is_caught
            print(text, file=log, flush=True)
            if not is_caught:
                print(text, flush=True)
    print(f"{caught} of {len(mutations)} caught")


main()
