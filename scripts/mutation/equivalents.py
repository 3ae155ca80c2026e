"""The mutants that change nothing which a test could see, each with a reason."""

import collections
import sys
import tomllib

# `occurrence`: among the equal mutants of equal lines of the file, from 1 on.
Equivalent = collections.namedtuple(
    "Equivalent", "file line original mutated reason occurrence", defaults=(1,))


def load(path):
    if not path.exists():
        return []
    entries = tomllib.loads(path.read_text()).get("equivalent", [])
    wanted = set(Equivalent._fields)
    for entry in entries:
        if set(entry) | {"occurrence"} != wanted or not entry["reason"].strip():
            sys.exit(f"{path}: an entry has {sorted(entry)}, and not {sorted(wanted)}")
    return [Equivalent(**entry) for entry in entries]


class Equivalents:
    """Finds the entry of a mutant by the text of its line: numbers of lines move."""

    def __init__(self, root, entries, mutants):
        """`mutants`: all that there are, in their order, also of files that are not
        tried now."""
        self._root = root
        self._lines = {}
        wanted = {(*entry[:4], entry.occurrence): entry for entry in entries}
        seen = collections.Counter()
        self._entries = {}  # mutant's place and change -> entry
        for mutant in mutants if entries else ():
            key = (mutant.file, self._line(mutant), mutant.original, mutant.mutated)
            seen[key] += 1
            entry = wanted.pop((*key, seen[key]), None)
            if entry:
                self._entries[mutant[:6]] = entry
        self._without_mutant = list(wanted.values())

    def entry_of(self, mutant):
        return self._entries.get(mutant[:6])

    def without_mutant(self):
        return self._without_mutant

    def _line(self, mutant):
        lines = self._lines.setdefault(
            mutant.file, (self._root / mutant.file).read_text().splitlines())
        return lines[mutant.line - 1].strip()
