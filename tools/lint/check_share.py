#!/usr/bin/env python3
"""The tests are between a quarter and a third of the lines: of those of C and C++ that are not blank."""
import pathlib
import sys

TOP = pathlib.Path(__file__).resolve().parents[2]
FOLDERS = ("src", "simulator", "transports", "bench", "tools", "tests")
SUFFIXES = {".h", ".cpp", ".c"}


def lines(folder):
    files = (path for path in (TOP / folder).rglob("*") if path.suffix in SUFFIXES)
    return sum(1 for path in files for line in path.read_text(encoding="utf-8").splitlines() if line.strip())


counts = {folder: lines(folder) for folder in FOLDERS}
share = counts["tests"] / sum(counts.values())
print(", ".join(f"{folder} {count}" for folder, count in counts.items()) + f": tests {share:.1%}")
sys.exit(0 if 1 / 4 <= share <= 1 / 3 else "the tests are not between a quarter and a third of the lines")
