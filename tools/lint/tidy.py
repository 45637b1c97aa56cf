#!/usr/bin/env python3
"""Runs clang-tidy over the sources that have changed since the whole tree was last found clean, or over all of them.

usage: tidy.py BUILD          the changed sources
       tidy.py BUILD full     all sources, with the static analyzer; writes the record of those without a finding
       tidy.py BUILD record   the changed sources; brings the record up to date with those without a finding, also when
                              it is interrupted

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
ELSEWHERE = TOP / "src/platform/windows"  # needs headers that only a build for that system has
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


def write_record(now, common, clean):
    # A source that somebody has edited since is not what was checked.
    content.cache_clear()
    included.cache_clear()
    same = (name for name, pair in now.items() if name in clean and sums(TOP / name, common) == pair)
    rows = "".join(f"{now[name][0]} {now[name][1]} {name}\n" for name in same)
    RECORD.write_text("# Sources that the whole lint found clean: see tidy.py, which writes this file.\n" + rows)


def main():
    build, mode = sys.argv[1], (sys.argv[2:] or [""])[0]
    version = subprocess.run(["clang-tidy", "--version"], capture_output=True, check=True).stdout
    common = digest(re.search(rb"version [\d.]+", version)[0], content(TOP / ".clang-tidy"),
                    content(TOP / "cmake/HouseFlags.cmake")).encode()
    now = {
        str(path.relative_to(TOP)): sums(path, common)
        for folder in FOLDERS
        for path in sorted((TOP / folder).rglob("*.cpp"))
        if not path.is_relative_to(ELSEWHERE)
    }
    before = {} if mode == "full" else recorded()
    clean = {name for name, pair in now.items() if before.get(name, ("", ""))[1] == pair[1]}
    jobs = [(name, name not in before or before[name][0] != pair[0]) for name, pair in now.items() if name not in clean]
    jobs.sort(key=lambda job: not job[1])
    print(f"{len(jobs)} of {len(now)} sources, {sum(deep for _, deep in jobs)} of them with the static analyzer")
    sys.stdout.flush()

    found = False
    try:
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            tasks = {pool.submit(tidy, build, *job): job[0] for job in jobs}
            try:
                for task in concurrent.futures.as_completed(tasks):
                    if told := task.result():
                        print(told, flush=True)
                        found = True
                    else:
                        clean.add(tasks[task])
            except KeyboardInterrupt:
                pool.shutdown(cancel_futures=True)
                raise
    finally:
        if mode in ("full", "record"):
            write_record(now, common, clean)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
