#!/usr/bin/env python3
"""Runs the executable zth4718 as its users do, without a display, and every example of docs/command.md.

usage: check_command.py PROGRAM ROOT
"""

import concurrent.futures
import os
import pathlib
import re
import shlex
import signal
import subprocess
import sys
import tempfile
import time

PROGRAM, ROOT = pathlib.Path(sys.argv[1]).absolute(), pathlib.Path(sys.argv[2])
WAITS = 7.2  # seconds that a start is to wait: for the adapter, for contact, before each search
BESIDE = 0.05  # seconds that it may take besides
faults = []


def environment(folder: str) -> dict[str, str]:
    without = {name: text for name, text in os.environ.items() if name not in ("DISPLAY", "WAYLAND_DISPLAY")}
    return without | {"HOME": folder, "PATH": f"{PROGRAM.parent}:{os.environ['PATH']}",
                      "ZTH4718_SIMULATOR": f"{folder}/board.conf"}


def run(line: str, folder: str, status: int = 0) -> str:
    done = subprocess.run(["bash", "-c", line], cwd=folder, env=environment(folder), capture_output=True, text=True,
                          timeout=150)
    if done.returncode != status:
        faults.append(f"{line}: status {done.returncode}, not {status}\n{done.stdout}{done.stderr}")
    return done.stdout


def check_examples(text: str, folder: str) -> None:
    for name, script in re.findall(r"```script (\S+)\n(.*?)```", text, re.DOTALL):
        pathlib.Path(folder, name).write_text(script)
    examples = re.findall(r"^    \$ (.*)\n((?:    (?!\$).*\n)*)", text, re.MULTILINE)
    if len(examples) < 10:
        faults.append(f"only {len(examples)} examples found")

    def check(example: tuple[str, str]) -> None:
        line, shown = example
        expected = re.sub(r"^    ", "", shown, flags=re.MULTILINE)
        out = run(line, folder)
        head = expected.removesuffix("...\n")
        if out != expected and (head == expected or not out.startswith(head) or out == head):
            faults.append(f"{line}: printed\n{out}instead of\n{expected}")

    # Those that read a file go behind the one that writes it; starts take long, so the others run at a time.
    writers = [example for example in examples if ">" in example[0]]
    with concurrent.futures.ThreadPoolExecutor(16) as pool:
        list(pool.map(check, writers))
        list(pool.map(check, [example for example in examples if example not in writers]))


def check_libraries() -> None:
    linked = subprocess.run(["ldd", PROGRAM], capture_output=True, text=True, check=True).stdout
    for library in ("Qt6Widgets", "Qt6Gui", "libX11", "libGL"):
        if library in linked:
            faults.append(f"the program links {library}")
    if "Qt6Core" not in linked:
        faults.append(f"ldd told nothing: {linked}")


def check_documents(folder: str) -> None:
    """Each command and option is in the documents, the manual page and the completion."""
    told = run("zth4718 --help", folder)
    words = re.findall(r"^  (?:-h,)?(-{0,2}[a-z-]+) ", told, re.MULTILINE)
    if len(words) < 15:
        faults.append(f"only {len(words)} words found in the help")
    for file in ("docs/command.md", "packaging/zth4718.1", "packaging/zth4718.completion"):
        text = (ROOT / file).read_text().replace("\\-", "-")
        faults.extend(f"{file} does not tell of {word}" for word in words
                      if word not in ("--help", "--version") and not re.search(rf"(?<![\w-]){word}(?!\w)", text))


def check_pace(folder: str) -> None:
    best = 1e9
    for _ in range(2):
        began = time.monotonic()
        run("zth4718 --board simulated read Remote1", folder)
        best = min(best, time.monotonic() - began)
    print(f"start to first value: {best:.3f} s, {1000 * (best - WAITS):.0f} ms besides the waits")
    # Sanitizers and busy machines take longer; a wait too many is noticed all the same.
    if best < WAITS or best - WAITS > 10 * BESIDE:
        faults.append(f"start to first value took {best:.3f} s, with waits of {WAITS} s")


def check_signal(folder: str) -> None:
    line = [PROGRAM, "--board", "simulated", "watch", "Remote1", "--interval", "100ms"]
    with subprocess.Popen(line, cwd=folder, env=environment(folder), stdout=subprocess.PIPE, text=True) as watch:
        first = watch.stdout.readline()
        watch.send_signal(signal.SIGINT)
        rest = watch.communicate(timeout=10)[0]
    if "Remote1 Temp" not in first or watch.returncode != 0 or not (first + rest).endswith("\n"):
        faults.append(f"Ctrl-C in watch: status {watch.returncode}, {first}{rest}")


def main() -> int:
    text = (ROOT / "docs/command.md").read_text()
    with tempfile.TemporaryDirectory() as folder:
        pathlib.Path(folder, "board.conf").write_text("noise = 0\n")
        check_libraries()
        check_documents(folder)
        check_pace(folder)
        check_examples(text, folder)
        check_signal(folder)
        board = shlex.quote(f"{PROGRAM.parent.parent}/boards/simulated")
        run(f"zth4718 --board {board} --record r.txt read 21h", folder)
        run("zth4718 --board replay:r.txt read 21h", folder)
        run(f"zth4718 --board {folder}/ find", folder, 3)
        run("zth4718 reed", folder, 2)
    for fault in faults:
        print(fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
