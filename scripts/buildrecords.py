"""What a build folder knows about the sources, for the checks that read them:
compile commands, and which files each object was made from."""

import functools
import hashlib
import json
import pathlib
import shlex
import subprocess
import sys

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


class Records:
    """Remembers under BUILD/NAME which sources have passed a check: one empty file
    per hash of a source, its headers, its compile command and the check itself.
    The headers come from the build's dependency records, so build first."""

    def __init__(self, build, name, check):
        self._build = build
        self._passed = build / name
        self._check = check

    def commands(self, folders):
        """Compile commands of the sources below the folders, each source once."""
        found = {}
        for command in json.loads((self._build / "compile_commands.json").read_text()):
            path = pathlib.Path(command["file"])
            if path.is_relative_to(ROOT) and not path.is_relative_to(self._build):
                relative = str(path.relative_to(ROOT))
                if relative.startswith(tuple(folders)):
                    found.setdefault(relative, command)
        return found

    def unchecked(self, folders):
        """Pairs of a compile command and the file to touch when its source passes."""
        self._passed.mkdir(exist_ok=True)
        made_from = self._dependencies()
        marks = []
        for source, command in self.commands(folders).items():
            words = shlex.split(command["command"])
            files = made_from.get(words[words.index("-o") + 1])
            if files is None:
                sys.exit(f"{source} has not been built in {self._build}")
            mark = self._passed / self._hash(command, files)
            if not mark.exists():
                marks.append((command, mark))
        return marks

    def _dependencies(self):
        """Object file -> the files it was made from, as ninja recorded them."""
        made_from, current = {}, None
        for line in output_of("ninja", "-C", str(self._build), "-t", "deps").splitlines():
            if line.startswith("    "):
                current.append(line.strip())
            elif ": #deps" in line:
                current = made_from.setdefault(line.split(":")[0], [])
        return made_from

    def _hash(self, command, files):
        total = hashlib.sha256(self._check.encode() + command["command"].encode())
        for file in [command["file"], *files]:
            total.update(fingerprint(str(self._build / file)).encode())
        return total.hexdigest()
