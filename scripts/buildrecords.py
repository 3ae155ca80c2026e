"""What a build folder knows about the sources, for the checks that read them:
compile commands, and which files each object was made from."""

import functools
import hashlib
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent


def output_of(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True, cwd=ROOT).stdout


def source_files(folders):
    """C++ files of git's tree, new ones included, below the folders."""
    listed = output_of("git", "ls-files", "-co", "--exclude-standard", "*.h", "*.cpp").split()
    return [f for f in listed if f.startswith(tuple(folders)) and (ROOT / f).exists()]


@functools.lru_cache(maxsize=None)
def fingerprint(path):
    """A system header is known by size and time, our own files by content."""
    file = pathlib.Path(path)
    if path.startswith("/usr/"):
        state = file.stat()
        return f"{state.st_size} {state.st_mtime_ns}"
    return hashlib.sha256(file.read_bytes()).hexdigest()


def without_precompiled(text):
    """A compile command that reads every header itself: so a check notices what a
    source forgets to include, and clang reads no file of gcc's."""
    return re.sub(r" -Winvalid-pch -include \S+/cmake_pch\.hxx", "", text)


class Records:
    """Remembers which sources have passed a check: one empty file per hash of a
    source, its headers, its compile command and the check itself, in the user's
    cache, so that all clones know it. The headers come from the build's dependency
    records, so build first."""

    DAYS_KEPT = 60

    def __init__(self, build, name, check):
        self._build = build
        cache = pathlib.Path(os.environ.get("XDG_CACHE_HOME") or pathlib.Path.home() / ".cache")
        self._passed = cache / "dmc50-checks" / name
        self._check = check
        self._made_from = self._dependencies()

    def commands(self, folders):
        """Compile commands of the sources below the folders, each source once."""
        found = {}
        for command in json.loads((self._build / "compile_commands.json").read_text()):
            path = pathlib.Path(command["file"])
            if path.is_relative_to(ROOT) and not path.is_relative_to(self._build):
                relative = str(path.relative_to(ROOT))
                if relative.startswith(tuple(folders)):
                    command["command"] = without_precompiled(command["command"])
                    found.setdefault(relative, command)
        return found

    def unchecked(self, folders):
        """Pairs of a compile command and the file to touch when its source passes."""
        self._passed.mkdir(parents=True, exist_ok=True)
        self._forget_old()
        marks = []
        for command in self.commands(folders).values():
            mark = self._passed / self._hash(command)
            if mark.exists():
                mark.touch()  # still of use
            else:
                marks.append((command, mark))
        return marks

    def _forget_old(self):
        oldest = time.time() - 24 * 60 * 60 * self.DAYS_KEPT
        for mark in self._passed.iterdir():
            if mark.stat().st_mtime < oldest:
                mark.unlink(missing_ok=True)

    def _dependencies(self):
        """Object file -> the files it was made from, as ninja recorded them; those of
        a precompiled header in its place."""
        made_from, current = {}, None
        for line in output_of("ninja", "-C", str(self._build), "-t", "deps").splitlines():
            if line.startswith("    "):
                current.append(line.strip())
            elif ": #deps" in line:
                current = made_from.setdefault(line.split(":")[0], [])
        for files in made_from.values():
            for header in [file for file in files if file.endswith(".gch")]:
                files.remove(header)
                files += made_from.get(os.path.relpath(header, self._build), [])
        return made_from

    def headers_of(self, command):
        """The project's own headers that the command's source includes, by themselves or
        through others; paths from the root."""
        found = (pathlib.Path(os.path.normpath(self._build / f)) for f in self._files_of(command))
        return {str(path.relative_to(ROOT)) for path in found
                if path.suffix == ".h" and path.is_relative_to(ROOT)
                and not path.is_relative_to(self._build)}

    def _files_of(self, command):
        words = shlex.split(command["command"])
        files = self._made_from.get(words[words.index("-o") + 1])
        if files is None:
            sys.exit(f"{command['file']} has not been built in {self._build}")
        return files

    def _hash(self, command):
        """The same in every clone."""
        text = command["command"].replace(str(self._build), "BUILD").replace(str(ROOT), "ROOT")
        total = hashlib.sha256(self._check.encode() + text.encode())
        for file in [command["file"], *self._files_of(command)]:
            total.update(fingerprint(str(self._build / file)).encode())
        return total.hexdigest()
