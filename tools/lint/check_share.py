#!/usr/bin/env python3
"""Checks that tests are roughly a quarter to a third of the C and C++ lines that are neither blank nor comment.

Prints the share; fails only below 22 or above 36 percent.

usage: check_share.py [-v]     -v lists the tests' files
"""
import pathlib
import re
import sys

TOP = pathlib.Path(__file__).resolve().parents[2]
FOLDERS = ("src", "simulator", "transports", "bench", "tools", "tests")
SUFFIXES = {".h", ".cpp", ".c"}
# String literals come first, so that a "//" in one is not a comment. Strings stay, comments go.
TEXT_OR_COMMENT = re.compile(r'R"(\w*)\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|(//[^\n]*|/\*.*?\*/)', re.DOTALL)


def lines(path):
    code = TEXT_OR_COMMENT.sub(lambda found: "" if found[2] else found[0], path.read_text(encoding="utf-8"))
    return sum(1 for line in code.splitlines() if line.strip())


counts = {
    folder: {path: lines(path) for path in sorted((TOP / folder).rglob("*")) if path.suffix in SUFFIXES}
    for folder in FOLDERS
}
sums = {folder: sum(files.values()) for folder, files in counts.items()}
share = sums["tests"] / sum(sums.values())
print(", ".join(f"{folder} {count}" for folder, count in sums.items()) + f": tests {share:.1%}")
if "-v" in sys.argv:
    print("".join(f"{count:5} {path.relative_to(TOP)}\n" for path, count in counts["tests"].items()), end="")
sys.exit(0 if 0.22 <= share <= 0.36 else "the tests are far from a quarter to a third of the code")
