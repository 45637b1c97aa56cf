#!/usr/bin/env python3
"""Runs clang-tidy over the sources that have changed since the whole tree was last found clean, or over all of them.

usage: tidy.py BUILD          the changed sources
       tidy.py BUILD full     all sources, with the static analyzer; writes the record of those without a finding

The record, tools/lint/clean.txt, holds two checksums for each source: one of the source itself, and one of the source
together with the project's headers that it includes, .clang-tidy, the warning flags and the version of clang-tidy. A
source whose second sum is unchanged is skipped. A source that has changed itself gets every check. If only something
that it includes has changed, it gets all checks except the static analyzer, which takes half of the time. An outdated
record costs time but hides nothing.
"""
import concurrent.futures
import functools
import hashlib
import os
import pathlib
import re
import subprocess
import sys

TOP = pathlib.Path(__file__).resolve().parents[2]
RECORD = TOP / "tools/lint/clean.txt"
FOLDERS = ("src", "simulator", "transports", "tests", "bench", "tools")
INCLUDE = re.compile(rb'^[ \t]*#[ \t]*include[ \t]*"([^"]+)"', re.MULTILINE)


@functools.cache
def content(path):
    return path.read_bytes()


@functools.cache
def included(path):
    """The project's files that a file includes, searched in the folders of all targets: a wrong guess only adds a file."""
    found = set()
    for name in INCLUDE.findall(content(path)):
        for folder in (path.parent, TOP, TOP / "src", TOP / "simulator", TOP / "transports"):
            candidate = pathlib.Path(os.path.normpath(folder / os.fsdecode(name)))
            if candidate.is_file():
                found.add(candidate)
    return found


def closure(path):
    seen, todo = set(), [path]
    while todo:
        file = todo.pop()
        if file not in seen:
            seen.add(file)
            todo.extend(included(file))
    return sorted(seen)


def digest(*parts):
    return hashlib.sha256(b"".join(hashlib.sha256(part).digest() for part in parts)).hexdigest()[:16]


def sums(path, common):
    return digest(content(path)), digest(common, *(content(file) for file in closure(path)))


def recorded():
    if not RECORD.is_file():
        return {}
    rows = (line.split() for line in RECORD.read_text().splitlines() if line and not line.startswith("#"))
    return {name: (own, whole) for own, whole, name in rows}


def tidy(build, path, analyzer):
    command = ["clang-tidy", "--quiet", "-p", build, str(path)]
    if not analyzer:
        command.insert(1, "--checks=-clang-analyzer-*")
    run = subprocess.run(command, cwd=TOP, capture_output=True, text=True)
    told = run.stdout.strip()
    if run.returncode:
        told = f"{told}\n{run.stderr.strip()}".strip() or f"{path}: clang-tidy ended with {run.returncode}"
    return told


def main():
    build, full = sys.argv[1], sys.argv[2:] == ["full"]
    version = subprocess.run(["clang-tidy", "--version"], capture_output=True, check=True).stdout
    common = digest(re.search(rb"version [\d.]+", version)[0], content(TOP / ".clang-tidy"),
                    content(TOP / "cmake/HouseFlags.cmake")).encode()
    now = {
        str(path.relative_to(TOP)): sums(path, common)
        for folder in FOLDERS
        for path in sorted((TOP / folder).rglob("*.cpp"))
    }
    before = {} if full else recorded()
    changed = {name: pair for name, pair in now.items() if before.get(name, ("", ""))[1] != pair[1]}
    jobs = [(name, name not in before or before[name][0] != pair[0]) for name, pair in changed.items()]
    print(f"{len(jobs)} of {len(now)} sources, {sum(deep for _, deep in jobs)} of them with the static analyzer")
    sys.stdout.flush()

    found = set()
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for (name, _), told in zip(jobs, pool.map(lambda job: tidy(build, *job), jobs)):
            if told:
                print(told, flush=True)
                found.add(name)
    if full:
        # A source that somebody has edited since is not what was checked.
        content.cache_clear()
        included.cache_clear()
        same = (name for name, pair in now.items() if name not in found and sums(TOP / name, common) == pair)
        rows = "".join(f"{now[name][0]} {now[name][1]} {name}\n" for name in same)
        RECORD.write_text("# Sources that the whole lint found clean: see tidy.py, which writes this file.\n" + rows)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
