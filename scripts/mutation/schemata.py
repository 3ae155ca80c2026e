"""Writes C++ files that carry all their mutants at once. A switch that is read
at run time chooses, so one compilation serves every mutant:

    a < b      becomes  (mutant(7) ? (a <= b) : (a < b))
    call();    becomes  if (mutant(8)) {} else call();
"""

import bisect
import collections

from mutation.finding import STATEMENT

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
    """One file's new text, and the mutants that wrote each piece of it."""

    def __init__(self, text, sites, first=""):
        """`sites`: pairs of a mutant's number and a site in this file; `first`: lines
        to begin with if there are any."""
        self._text = text
        self._pieces = [(first.encode() if sites else b"", ())]  # and the mutants around
        places = collections.defaultdict(list)
        for number, site in sites:
            places[(site.start, -site.end, site.form != STATEMENT)].append((number, site))
        # Outer places come before what they contain.
        self._places = [(start, -end, places[(start, end, form)])
                        for start, end, form in sorted(places)]
        self._write(0, len(text), 0, len(self._places), ())
        self._starts = [0]
        for piece, _ in self._pieces:
            self._starts.append(self._starts[-1] + len(piece))

    def text(self):
        return b"".join(piece for piece, _ in self._pieces)

    def mutants_at(self, line, column):
        """Numbers of the mutants that wrote the text there, innermost first; those
        of the line if it is the author's own."""
        lines = self.text().split(b"\n")
        start = sum(len(text) + 1 for text in lines[:line - 1])
        piece = bisect.bisect_right(self._starts, start + column - 1) - 1
        numbers = self._pieces[min(piece, len(self._pieces) - 1)][1]
        if numbers:
            return set(numbers)
        end = start + len(lines[line - 1])
        return {number for at, (_, around) in zip(self._starts, self._pieces)
                if start <= at <= end for number in around}

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
        statement = sites[0][1].form == STATEMENT
        for number, site in sites:
            switch = f"mutant({number})"
            written = (f"if ({switch}) {{ {site.mutated} }} else " if statement
                       else f"({switch} ? ({site.mutated}) : ")
            self._pieces.append((written.encode(), (number,)))
        around = tuple(number for number, _ in sites)
        if statement:
            self._write(start, end, first, last, ())
        else:
            self._pieces.append((b"(", around))
            self._write(start, end, first, last, around)
            self._pieces.append((b")" * (len(sites) + 1), around))
