"""The mutants that change nothing which a test could see, each with a reason."""

import collections
import sys
import tomllib

Equivalent = collections.namedtuple("Equivalent", "file line original mutated reason")


def load(path):
    if not path.exists():
        return []
    entries = tomllib.loads(path.read_text()).get("equivalent", [])
    wanted = set(Equivalent._fields)
    for entry in entries:
        if set(entry) != wanted or not entry["reason"].strip():
            sys.exit(f"{path}: an entry has {sorted(entry)}, and not {sorted(wanted)}")
    return [Equivalent(**entry) for entry in entries]


class Equivalents:
    """Finds the entry of a mutant by the text of its line: numbers of lines move."""

    def __init__(self, root, entries, mutants):
        """`mutants`: all that there are, also of files that are not tried now."""
        self._root = root
        self._lines = {}
        self._entries = {entry[:4]: entry for entry in entries}
        there = {self._key(mutant) for mutant in mutants} if entries else set()
        self._without_mutant = [e for key, e in self._entries.items() if key not in there]

    def entry_of(self, mutant):
        return self._entries.get(self._key(mutant))

    def without_mutant(self):
        return self._without_mutant

    def _key(self, mutant):
        lines = self._lines.setdefault(
            mutant.file, (self._root / mutant.file).read_text().splitlines())
        return mutant.file, lines[mutant.line - 1].strip(), mutant.original, mutant.mutated
