#!/usr/bin/env python3
"""Checks that binaries carry the hardening of Debian's build flags, read from the files themselves.

usage: check_hardening.py FILE...    names each file that lacks some, says what it lacks, and exits with 1
"""

import re
import subprocess
import sys


def read(*command: str) -> str:
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def entries(path: str, executable: bool) -> list[tuple[int, str]]:
    """Functions called from outside: main, or the exports of a library. A stripped executable does not show its main."""
    if executable:
        found = re.findall(r"(\w+) +\d+ FUNC .* (main)$", read("readelf", "-Ws", path), re.M)
    else:
        found = re.findall(r"^(\w+) T (\w+)", read("nm", "-D", "--defined-only", path), re.M)
    return [(int(address, 16), name) for address, name in found]


def faults(path: str) -> list[str]:
    head = read("readelf", "-Wh", path)
    segments = read("readelf", "-Wl", path)
    dynamic = read("readelf", "-Wd", path)
    symbols = read("readelf", "-W", "--dyn-syms", path)
    executable = "INTERP" in segments
    found = []
    if "GNU_RELRO" not in segments:
        found.append("no RELRO")
    if not re.search(r"BIND_NOW|Flags:.*\bNOW\b", dynamic):
        found.append("no BIND_NOW")
    if "DYN" not in head or executable and not re.search(r"Flags:.*\bPIE\b", dynamic):
        found.append("no PIE")
    if "__stack_chk_fail" not in symbols:
        found.append("no stack protector")
    if not re.search(r"\b__\w+_chk\b", symbols):
        found.append("no fortified function")
    if "X86-64" in head:
        for address, name in entries(path, executable):
            code = read("objdump", "-d", f"--start-address={address}", f"--stop-address={address + 4}", path)
            if not re.search(r"\bendbr64\b", code):
                found.append(f"no endbr64 at {name}")
    return [f"{path}: {fault}" for fault in found]


def main() -> int:
    if len(sys.argv) < 2:
        print(__doc__, file=sys.stderr)
        return 2
    found = [fault for path in sys.argv[1:] for fault in faults(path)]
    print("\n".join(found))
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
