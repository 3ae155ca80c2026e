"""Builds a copy of the tree that carries all mutants of its mutated folder."""

import collections
import concurrent.futures
import filecmp
import functools
import hashlib
import json
import os
import pathlib
import pickle
import re
import shlex
import shutil
import subprocess
import sys

from clang import cindex

from mutation import finding, schemata

HERE = pathlib.Path(__file__).resolve().parent
# Q_ASSERT and the C++ library's own checks see what a mutant does out of bounds.
FLAGS = "-O0 -g0 -w -D_GLIBCXX_ASSERTIONS"
ERROR = re.compile(r"^(?P<file>/[^:\n]+):(?P<line>\d+):(?P<column>\d+): (?:fatal )?error: (?P<text>.*)",
                   re.MULTILINE)


def _digest(*parts):
    total = hashlib.sha256()
    for part in parts:
        total.update(part if isinstance(part, bytes) else str(part).encode())
        total.update(b"\0")
    return total.hexdigest()


def _found_in(source, arguments, root, folder):
    """Mutants of one source and of the headers below `folder` that it includes."""
    inside = os.path.join(root, folder, "")

    @functools.lru_cache(maxsize=None)
    def name_of(path):
        path = os.path.abspath(path)
        return os.path.relpath(path, root) if path.startswith(inside) else None

    unit = cindex.Index.create().parse(
        source, arguments,
        options=cindex.TranslationUnit.PARSE_DETAILED_PROCESSING_RECORD)
    errors = [str(d) for d in unit.diagnostics if d.severity >= cindex.Diagnostic.Error]
    if errors:
        raise RuntimeError("\n".join(errors))
    return finding.Finder(name_of).find(unit)


class Tree:
    """`root`'s files as git lists them, copied to `build`/tree, and built there in
    `build`/out. `root` itself is never written to."""

    def __init__(self, root, build, folder="runtime"):
        self.root, self.build, self.folder = root, build, folder
        self.copy, self.out = build / "tree", build / "out"
        self.mutants = {}  # number -> mutant, without those that do not compile
        self._files = []

    def files(self):
        if not self._files:
            listed = subprocess.run(
                ["git", "ls-files", "-co", "--exclude-standard"], cwd=self.root, check=True,
                capture_output=True, text=True).stdout.splitlines()
            self._files = [f for f in listed if (self.root / f).is_file()]
        return self._files

    def mutated_files(self):
        return sorted(f for f in self.files()
                      if f.startswith(self.folder + "/") and f.endswith((".h", ".cpp")))

    def make(self, targets):
        """Brings the copy and its programs up to date."""
        self._copy_files()
        self._configure()
        found = self._find_mutants()
        self._compile(found, targets)

    # The copy.

    def _copy_files(self):
        files = set(self.files())
        mutated = set(self.mutated_files())
        for old in [p for p in self.copy.rglob("*") if p.is_file()] if self.copy.exists() else []:
            if str(old.relative_to(self.copy)) not in files:
                old.unlink()
        for file in files:
            source, target = self.root / file, self.copy / file
            if target.exists() and (file in mutated or filecmp.cmp(source, target, shallow=False)):
                continue
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(source, target)
            shutil.copymode(source, target)

    def _configure(self):
        library = self.build / "libmutants.so"
        sources = [HERE / "switch.cpp", HERE / "switch.h"]
        if not library.exists() or any(
                s.stat().st_mtime > library.stat().st_mtime for s in sources):
            subprocess.run(["g++", "-shared", "-fPIC", "-O2", "-I", HERE.parent.parent,
                            "-o", library, sources[0]], check=True)
        self._run([
            "cmake", "-S", self.copy, "-B", self.out, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
            f"-DCMAKE_CXX_FLAGS={FLAGS}", "-DCMAKE_CXX_FLAGS_DEBUG=",
            f"-DCMAKE_CXX_STANDARD_LIBRARIES={library}", "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON",
        ])

    def _run(self, command):
        done = subprocess.run(command, capture_output=True, text=True)
        if done.returncode != 0:
            sys.exit(done.stdout + done.stderr)

    # The mutants.

    def _find_mutants(self):
        """All mutants, in the order of their places. What a source was found to
        have is kept until it or a header changes."""
        headers = [(self.root / f).read_bytes() for f in self.mutated_files() if f.endswith(".h")]
        common = _digest(*headers, (HERE / "finding.py").read_bytes())
        kept = self.build / "found"
        kept.mkdir(exist_ok=True)
        waiting = {}
        results = []
        for source, arguments in self._commands().items():
            mark = kept / _digest(common, source, *arguments, (self.root / source).read_bytes())
            if mark.exists():
                results.append(pickle.loads(mark.read_bytes()))
            else:
                waiting[mark] = (str(self.root / source), arguments, str(self.root), self.folder)
        with concurrent.futures.ProcessPoolExecutor() as pool:
            jobs = {mark: pool.submit(_found_in, *job) for mark, job in waiting.items()}
            for mark, job in jobs.items():
                mark.write_bytes(pickle.dumps(job.result()))
                results.append(job.result())
        return self._merged(results)

    def _merged(self, results):
        """A header's mutants are found in every source that includes it, the uses of
        a constant in many."""
        merged = {}
        for mutant in (m for result in results for m in result):
            same = merged.setdefault(mutant[:6], mutant._replace(sites=[]))
            same.sites.extend(site for site in mutant.sites if site not in same.sites)
        return sorted(merged.values(), key=lambda m: (m[:3], m.original, m.mutated))

    def _commands(self):
        """Source -> arguments for a parser that reads the unmutated files."""
        found = {}
        for command in json.loads((self.out / "compile_commands.json").read_text()):
            path = pathlib.Path(command["file"])
            if not path.is_relative_to(self.copy / self.folder):
                continue
            words = shlex.split(command["command"].replace(str(self.copy), str(self.root)))
            kept = [w for w in words if re.match(r"-(I|D|std=)", w)]
            for option, value in zip(words, words[1:]):
                if option == "-isystem":
                    kept += [option, value]
            found.setdefault(str(path.relative_to(self.copy)), kept)
        return dict(sorted(found.items()))

    # The build.

    def _compile(self, found, targets):
        """Writes the mutants into the copy and builds it, until all that is left
        compiles."""
        numbers = schemata.numbered(found, self.mutated_files())
        kept = self.build / "refused.json"
        known = set(json.loads(kept.read_text())) if kept.exists() else set()
        refused = {(n, site) for n, m in numbers.items() for site in m.sites
                   if self._key(m, site) in known}
        for _ in range(20):
            schemas = self._write(numbers, refused)
            done = subprocess.run(["ninja", "-C", self.out, "-k", "0", *targets],
                                  capture_output=True, text=True)
            if done.returncode == 0:
                break
            blamed = self._blamed(done.stdout, schemas)
            if not blamed:
                sys.exit(done.stdout[-8000:])
            refused |= blamed
        else:
            sys.exit("mutate: the mutants do not compile")
        self.mutants = {n: m for n, m in numbers.items()
                        if any((n, site) not in refused for site in m.sites)}
        kept.write_text(json.dumps(sorted(self._key(numbers[n], site) for n, site in refused)))

    def _write(self, numbers, refused):
        sites = collections.defaultdict(list)
        for number, mutant in numbers.items():
            for site in mutant.sites:
                if (number, site) not in refused:
                    sites[site.file].append((number, site))
        schemas = {}
        for file in self.mutated_files():
            schema = schemata.Schema((self.root / file).read_bytes(), sites[file],
                                     f'#include "{HERE / "switch.h"}"\n')
            target, text = self.copy / file, schema.text()
            if target.read_bytes() != text:
                target.write_bytes(text)
            schemas[str(target)] = schema
        return schemas

    def _blamed(self, output, schemas):
        """The sites that the compiler's errors point to."""
        blamed = set()
        for error in ERROR.finditer(output):
            schema = schemas.get(os.path.normpath(error["file"]))
            if schema:
                blamed |= schema.sites_at(int(error["line"]), int(error["column"]))
        return blamed

    def _key(self, mutant, site):
        """What a refused site is remembered by, for the next run."""
        return _digest((self.root / site.file).read_bytes(), *mutant[:6], *site)
