"""Runs tests of the build that carries all mutants: which test reaches which
mutant, and which test fails with it."""

import collections
import concurrent.futures
import hashlib
import json
import os
import pathlib
import pickle
import re
import resource
import signal
import subprocess
import tempfile
import time

# A GoogleTest case: the program that has it, and how ctest runs it.
Test = collections.namedtuple("Test", "program name environment")
# What a test did without a mutant: seconds, and numbers of the mutants it reached.
Reach = collections.namedtuple("Reach", "passed seconds numbers")
Verdict = collections.namedtuple("Verdict", "outcome by")  # by: the failing test, or how it ended

KILLED, SURVIVED, NOT_REACHED = "killed", "survived", "not reached"

GIB = 1 << 30
# The most specific tests of a mutant run first, without the others.
FIRST_TESTS = 8


def tests_of(out, programs):
    """The tests of the programs, as ctest knows them."""
    shown = subprocess.run(["ctest", "--show-only=json-v1"], cwd=out, check=True,
                           capture_output=True, text=True).stdout
    tests = []
    for test in json.loads(shown)["tests"]:
        command = test.get("command", [])
        names = [re.sub("^--gtest_filter=", "", w) for w in command if w.startswith("--gtest_filter=")]
        if names and pathlib.Path(command[0]).name in programs:
            properties = {p["name"]: p["value"] for p in test.get("properties", [])}
            environment = tuple(e for e in properties.get("ENVIRONMENT", []) if e)
            tests.append(Test(command[0], names[0], environment))
    return tests


def _limit(cpu_seconds):
    """In the child: what a mutant may do to the machine."""
    def apply():
        resource.setrlimit(resource.RLIMIT_CPU, (cpu_seconds, cpu_seconds + 1))
        resource.setrlimit(resource.RLIMIT_AS, (8 * GIB, 8 * GIB))
        resource.setrlimit(resource.RLIMIT_FSIZE, (GIB // 4, GIB // 4))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    return apply


def _run(tests, seconds, **variables):
    """Runs tests of one program until one fails. `seconds` is what they normally
    take. Returns None, or the name of the failed test, or how the run ended."""
    first = tests[0]
    environment = dict(os.environ, RC_PARAMS="seed=1", **variables)
    environment.update(e.split("=", 1) for e in first.environment)
    names = ":".join(test.name for test in tests)
    with tempfile.TemporaryDirectory(prefix="mutate") as folder:
        environment["TMPDIR"] = folder
        with open(os.path.join(folder, "output"), "w+b") as output:
            process = subprocess.Popen(
                [first.program, f"--gtest_filter={names}", "--gtest_fail_fast"],
                stdin=subprocess.DEVNULL, stdout=output, stderr=output, cwd=folder,
                env=environment, start_new_session=True,
                preexec_fn=_limit(int(5 + 4 * seconds)))
            try:
                code = process.wait(timeout=20 + 10 * seconds)
            except subprocess.TimeoutExpired:
                code = "hangs"
            finally:
                try:
                    os.killpg(process.pid, signal.SIGKILL)
                except ProcessLookupError:
                    pass
                process.wait()
            if code == 0:
                return None
            output.seek(0)
            return _failure(output.read().decode(errors="replace"), code)


def _failure(output, code):
    failed = re.findall(r"^\[  FAILED  \] ([^ ,\n]+)", output, re.MULTILINE)
    started = re.findall(r"^\[ RUN      \] (\S+)", output, re.MULTILINE)
    return failed[0] if failed else started[-1] if started else f"ends with {code}"


def _reach(test):
    """One test alone. The file of what it reached survives its crash, too."""
    with tempfile.NamedTemporaryFile(prefix="reached") as file:
        start = time.monotonic()
        failure = _run([test], 60, MUTANTS_REACHED=file.name)
        seconds = time.monotonic() - start
        marks = pathlib.Path(file.name).read_bytes()
    return Reach(failure is None, seconds,
                 frozenset(match.start() for match in re.finditer(b"\1", marks)))


class Reaches:
    """What every test reaches, kept until its program or a plug-in changes."""

    def __init__(self, build, tests, jobs):
        kept = build / "reach"
        kept.mkdir(exist_ok=True)
        libraries = [hashlib.sha256(p.read_bytes()).digest() for p in sorted(build.rglob("*.so"))]
        self._of = {}
        for program in sorted({test.program for test in tests}):
            mine = [test for test in tests if test.program == program]
            state = hashlib.sha256(pathlib.Path(program).read_bytes() + b"".join(libraries))
            mark = kept / f"{pathlib.Path(program).name}-{state.hexdigest()}"
            if not mark.exists():
                for old in kept.glob(f"{pathlib.Path(program).name}-*"):
                    old.unlink()
                with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
                    mark.write_bytes(pickle.dumps(dict(zip(mine, pool.map(_reach, mine)))))
            self._of.update(pickle.loads(mark.read_bytes()))
        self._by_number = collections.defaultdict(list)
        for test, reach in self._of.items():
            for number in reach.numbers if reach.passed else ():
                self._by_number[number].append(test)

    def failing(self):
        """Tests that fail without a mutant: they can tell nothing."""
        return [test for test, reach in self._of.items() if not reach.passed]

    def tests_reaching(self, number):
        """Most specific first."""
        return sorted(self._by_number[number],
                      key=lambda test: (len(self._of[test].numbers), test.program, test.name))

    def seconds(self, tests):
        return sum(self._of[test].seconds for test in tests)


def verdict(number, reaches, hint=None):
    """`hint`: name of the test that failed with this mutant the last time."""
    tests = reaches.tests_reaching(number)
    if not tests:
        return Verdict(NOT_REACHED, None)
    hinted = [test for test in tests if test.name == hint]
    rest = [test for test in tests if test not in hinted]
    for some in (hinted, rest[:FIRST_TESTS], rest[FIRST_TESTS:]):
        for program in sorted({test.program for test in some}):
            batch = [test for test in some if test.program == program]
            failure = _run(batch, reaches.seconds(batch), MUTANT=str(number))
            if failure:
                return Verdict(KILLED, failure)
    return Verdict(SURVIVED, None)
