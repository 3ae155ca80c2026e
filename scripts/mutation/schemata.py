"""Writes C++ files that carry all their mutants at once. A switch that is read
at run time chooses, so one compilation serves every mutant:

    a < b        becomes  (mutant(7) ? (a <= b) : (a < b))
    if (pointer) becomes  if ((mutant(9) ? (!(pointer)) : bool(pointer)))
    call();      becomes  if (mutant(8)) {} else call();
"""

import bisect
import collections

from mutation.finding import CONDITION, STATEMENT

# Numbers of one file: a file that gets another mutant renumbers no other file.
NUMBERS_OF_A_FILE = 4096


def numbered(mutants, files):
    """Number -> mutant. `files` is the sorted list of all files with mutants."""
    base = {file: index * NUMBERS_OF_A_FILE for index, file in enumerate(files)}
    numbers = {}
    for mutant in mutants:
        numbers[base[mutant.file]] = mutant
        base[mutant.file] += 1
    return numbers


class Schema:
    """One file's new text, and the sites that wrote each piece of it. A site goes
    with its mutant's number, as a pair."""

    def __init__(self, text, sites, first=""):
        """`first`: lines to begin with if there are any sites."""
        self._text = text
        self._pieces = [(first.encode() if sites else b"", ())]  # with the sites around
        places = collections.defaultdict(list)
        for number, site in sites:
            places[(site.start, -site.end, site.form)].append((number, site))
        # Outer places come before what they contain.
        self._places = [(start, -end, places[(start, end, form)])
                        for start, end, form in sorted(places)]
        self._write(0, len(text), 0, len(self._places), ())
        self._starts = [0]
        for piece, _ in self._pieces:
            self._starts.append(self._starts[-1] + len(piece))

    def text(self):
        return b"".join(piece for piece, _ in self._pieces)

    def sites_at(self, line, column):
        """Those that wrote the text there, or those of the line if the text is the
        author's own."""
        lines = self.text().split(b"\n")
        start = sum(len(text) + 1 for text in lines[:line - 1])
        piece = bisect.bisect_right(self._starts, start + column - 1) - 1
        sites = self._pieces[min(piece, len(self._pieces) - 1)][1]
        if sites:
            return set(sites)
        end = start + len(lines[line - 1])
        return {site for at, (_, around) in zip(self._starts, self._pieces)
                if start <= at <= end for site in around}

    def _write(self, start, end, first, last, around):
        """The text from start to end with the places from first to last."""
        position = start
        while first < last:
            place_start, place_end, sites = self._places[first]
            inside = first + 1
            while inside < last and self._places[inside][0] < place_end:
                inside += 1
            self._pieces.append((self._text[position:place_start], around))
            self._write_place(place_start, place_end, sites, first + 1, inside)
            position, first = place_end, inside
        self._pieces.append((self._text[position:end], around))

    def _write_place(self, start, end, sites, first, last):
        form = sites[0][1].form
        for number, site in sites:
            switch = f"mutant({number})"
            written = (f"if ({switch}) {{ {site.mutated} }} else " if form == STATEMENT
                       else f"({switch} ? ({site.mutated}) : ")
            self._pieces.append((written.encode(), ((number, site),)))
        if form == STATEMENT:
            self._write(start, end, first, last, ())
            return
        around = tuple(sites)
        self._pieces.append((b"bool(" if form == CONDITION else b"(", around))
        self._write(start, end, first, last, around)
        self._pieces.append((b")" * (len(sites) + 1), around))
