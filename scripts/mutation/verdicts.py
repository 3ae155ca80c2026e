"""What became of mutants in earlier runs."""

import hashlib
import json
import pathlib
import subprocess

from mutation import testing


def _digest(*parts):
    return hashlib.sha256("\0".join(map(str, parts)).encode()).hexdigest()


def test_states(tree, programs):
    """Program -> hash of the files of tests/ (or whatever is not mutated) that
    it was made from."""
    listed = subprocess.run(["ninja", "-C", tree.out, "-t", "deps"], capture_output=True,
                            text=True, check=True).stdout
    made_from, current = {}, None
    for line in listed.splitlines():
        if line.startswith("    "):
            current.add(line.strip())
        elif ": #deps" in line:
            current = made_from.setdefault(line.split(":")[0], set())
    mutated = tree.copy / tree.folder
    states = {}
    for program in programs:
        folder = pathlib.Path(program).relative_to(tree.out)
        own = f"{folder.parent}/CMakeFiles/{folder.name}.dir/"
        files = {tree.out / file for made, files in made_from.items()
                 if made.startswith(own) for file in files}
        ours = sorted(f for f in files if f.is_relative_to(tree.copy)
                      and not f.is_relative_to(mutated))
        states[program] = _digest(*(f.read_bytes() for f in ours))
    return states


class Verdicts:
    """A verdict holds while the mutant's file and the sources of the test programs
    that reach it stay as they are. When they change, the test that killed the
    mutant before is asked first."""

    def __init__(self, path, tree, reaches, states):
        self._path, self._tree, self._reaches, self._states = path, tree, reaches, states
        kept = json.loads(path.read_text()) if path.exists() else {}
        self._verdicts = kept.get("verdicts", {})
        self._killers = kept.get("killers", {})
        self._hashes = {}

    def known(self, number, mutant):
        kept = self._verdicts.get(self._key(number, mutant))
        return testing.Verdict(*kept) if kept else None

    def find(self, number, mutant):
        """Runs the tests. Any thread."""
        return testing.verdict(number, self._reaches, self._killers.get(self._name(mutant)))

    def keep(self, number, mutant, verdict):
        self._verdicts[self._key(number, mutant)] = verdict
        if verdict.outcome == testing.KILLED:
            self._killers[self._name(mutant)] = verdict.by

    def save(self):
        text = json.dumps({"verdicts": self._verdicts, "killers": self._killers})
        new = self._path.with_suffix(".new")
        new.write_text(text)
        new.replace(self._path)

    def _name(self, mutant):
        return _digest(mutant.file, mutant.kind, mutant.original, mutant.mutated)

    def _key(self, number, mutant):
        file = mutant.file
        if file not in self._hashes:
            self._hashes[file] = _digest((self._tree.root / file).read_bytes())
        programs = sorted({test.program for test in self._reaches.tests_reaching(number)})
        return _digest(self._hashes[file], *mutant[:6],
                       *((program, self._states[program]) for program in programs))
