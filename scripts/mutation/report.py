"""What a run says: the survivors, and a table of the rooms."""

import collections

from mutation.testing import KILLED, NOT_REACHED, SURVIVED

EQUIVALENT, NOT_TRIED = "equivalent", "not tried"
COLUMNS = (KILLED, SURVIVED, NOT_REACHED, EQUIVALENT, NOT_TRIED)


def _one_line(text):
    return " ".join(text.split())


def described(mutant, outcome):
    change = (f"{_one_line(mutant.original)}  ->  {_one_line(mutant.mutated)}" if mutant.mutated
              else _one_line(mutant.original))
    reached = " (not reached)" if outcome == NOT_REACHED else ""
    return f"{mutant.file}:{mutant.line}:{mutant.column}: {mutant.kind}{reached}: {change}"


def survivors(outcomes):
    return [described(mutant, outcome) for mutant, outcome in outcomes
            if outcome in (SURVIVED, NOT_REACHED)]


def score(counts):
    """Per cent of the tried mutants that a test could kill and one does, or None."""
    tried = counts[KILLED] + counts[SURVIVED] + counts[NOT_REACHED]
    return 100 * counts[KILLED] / tried if tried else None


def rooms(outcomes):
    """Folder -> how many mutants came to which outcome."""
    counted = collections.defaultdict(collections.Counter)
    for mutant, outcome in outcomes:
        counted[mutant.file.rsplit("/", 1)[0]][outcome] += 1
    return dict(sorted(counted.items()))


def table(outcomes):
    counted = rooms(outcomes)
    counted["all"] = sum(counted.values(), collections.Counter())
    lines = [f"{'':32}" + "".join(f"{name:>12}" for name in ("mutants", *COLUMNS, "score"))]
    for room, counts in counted.items():
        cells = [sum(counts.values()), *(counts[name] for name in COLUMNS)]
        reached = score(counts)
        lines.append(f"{room:32}" + "".join(f"{cell:>12}" for cell in cells)
                     + ("" if reached is None else f"{reached:>10.1f} %"))
    return "\n".join(lines)
