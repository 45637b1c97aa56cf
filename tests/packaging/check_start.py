#!/usr/bin/env python3
"""Runs the package's start script on doubles and checks what it starts, with which folders on the loader's path.

usage: check_start.py SCRIPT    prints one wrong case per line and exits with 1 if there is any
"""

import os
import pathlib
import subprocess
import sys
import tempfile

USB, SMBUS = "libUSBFunctions.so", "libsmbus.so"
CACHE = "\t{} (libc6,x86-64) => /usr/local/lib/{}"

# What exists: files in or beside the package's folder, lines of the loader's cache, whether the PC's host may be used,
# LD_LIBRARY_PATH and the arguments; then the program that runs and its path, or the exit status.
CASES = {
    "nothing": ({}, "simulated: boards/simulated"),
    "a bare name in our own boards is not somebody's": ({"path": "boards/simulated"},
                                                       "simulated: boards/simulated:boards/simulated"),
    "also by another way there": ({"path": "bin/../boards/linux-smbus/"},
                                  "simulated: boards/simulated:bin/../boards/linux-smbus/"),
    "an adapter's library beside the program": ({"files": [f"bin/{USB}"]}, "bin: "),
    "a bus's library beside the program": ({"files": [f"bin/{SMBUS}"], "host": True}, "bin: "),
    "an adapter's library on the path": ({"files": [f"maker/{USB}"], "path": "other:maker"}, "bin: other:maker"),
    "in a folder with odd signs": ({"files": [f"a [b] maker*/{USB}", "a b makers/x"], "path": "a [b] maker*"},
                                   "bin: a [b] maker*"),
    "behind the simulated board": ({"files": [f"maker/{USB}"], "path": "boards/simulated:maker"},
                                   "bin: boards/simulated:maker"),
    "in the working folder, as an empty part": ({"files": [f"maker/{USB}"], "path": "other:", "cwd": "maker"},
                                               "bin: other:"),
    "in the loader's cache": ({"cache": [CACHE.format(USB, USB)]}, "bin: "),
    "another name in the cache": ({"cache": [CACHE.format("libsmbus.so.2", SMBUS), CACHE.format("xlibsmbus.so", "x")]},
                                  "simulated: boards/simulated"),
    "the PC's host": ({"host": True}, "bin: boards/linux-smbus"),
    "the PC's host and an adapter's library": ({"host": True, "files": [f"bin/{USB}"], "path": "x"},
                                               "bin: boards/linux-smbus:x"),
    "the PC's host and a bus's library on the path": ({"host": True, "files": [f"maker/{SMBUS}"], "path": "maker"},
                                                      "bin: maker"),
    "simulated by name": ({"host": True, "files": [f"bin/{USB}"], "arguments": ["simulated"]},
                          "simulated: boards/simulated"),
    "the host by name": ({"arguments": ["linux-smbus"]}, "bin: boards/linux-smbus"),
    "a recording of both links": ({"texts": {"r.txt": "# x\n0.1 usb firmware -> 1\n2 smbus detect -> ok\n"},
                                   "arguments": ["replay", "r.txt"]}, "bin: boards/replay"),
    "a recording of one": ({"texts": {"r.txt": "# 1 smbus x\n0.1 usb firmware -> 1\n"}, "arguments": ["replay", "r.txt"]},
                           "bin: boards/replay/usb-only"),
    "a recording of the other": ({"texts": {"r.txt": "0.1 smbus detect -> ok\n"}, "arguments": ["replay", "r.txt"]},
                                 "bin: boards/replay/smbus-only"),
    "no recording": ({"texts": {"r.txt": "?"}, "arguments": ["replay", "r.txt"]}, "bin: boards/replay"),
    "a recording that is not there": ({"arguments": ["replay", "r.txt"]}, "status 2"),
    "a recording behind a maker's library": ({"texts": {"r.txt": "?"}, "files": [f"bin/{USB}"],
                                              "arguments": ["replay", "r.txt"]}, "status 2"),
    "a board that is not there": ({"host": True, "arguments": ["nowhere"]}, "status 2"),
}


def put(path, text):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(text)
    path.chmod(0o755)


def run(script, case):
    with tempfile.TemporaryDirectory() as folder:
        home = pathlib.Path(folder).resolve()
        for program in ("bin", "boards/simulated"):
            put(home / program / "zth4718-evaluation", f'#!/bin/sh\necho "{program.split("/")[-1]}: $LD_LIBRARY_PATH"\n')
        for board in ("simulated", "linux-smbus", "replay", "replay/usb-only", "replay/smbus-only"):
            put(home / "boards" / board / SMBUS, "")
        put(home / "boards/linux-smbus/in-reach", f"#!/bin/sh\nexit {0 if case.get('host') else 1}\n")
        put(home / "path/ldconfig", "#!/bin/sh\ncat <<'END'\n" + "\n".join(case.get("cache", [])) + "\nEND\n")
        for file in case.get("files", []):
            put(home / file, "")
        for file, text in case.get("texts", {}).items():
            put(home / file, text)
        environment = {"PATH": f"{home / 'path'}:{os.environ['PATH']}", "ZTH4718_HOME": str(home)}
        if "path" in case:
            environment["LD_LIBRARY_PATH"] = ":".join(part and f"{home}/{part}" for part in case["path"].split(":"))
        done = subprocess.run(["sh", script, *case.get("arguments", [])], env=environment, cwd=home / case.get("cwd", ""),
                              capture_output=True, text=True, check=False)
        if done.returncode != 0:
            return f"status {done.returncode}"
        return done.stdout.strip("\n").replace(f"{home}/", "")


def main():
    script = str(pathlib.Path(sys.argv[1]).resolve())
    wrong = 0
    for what, (case, expected) in CASES.items():
        found = run(script, case)
        if found != expected:
            wrong += 1
            print(f"{what}: '{found}' and not '{expected}'")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
