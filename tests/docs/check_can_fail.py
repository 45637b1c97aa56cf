#!/usr/bin/env python3
"""Shows that check_docs.py can fail: each row plants one fault in a copy of the documents, which it must report.

usage: check_can_fail.py ROOT
"""

import pathlib
import shutil
import subprocess
import sys
import tempfile

CHECK = pathlib.Path(__file__).with_name("check_docs.py")
NEEDED = ("LICENSE", "README.md", "CONTRIBUTING.md", "docs", "src", "simulator", "tools/gallery")

# file, original text, its replacement, and what the check then reports
FAULTS = [
    ("README.md", "docs/hardware.md", "docs/hardwares.md", "docs/hardwares.md is not there"),
    ("docs/guide.md", "(#graphs)", "(#grafs)", "#grafs has no such heading"),
    ("docs/guide.md", "](pictures/guide-alert.png)", "](pictures/guide-start.png)",
     "docs/pictures/guide-alert.png: no document shows it"),
    ("tools/gallery/GuideScenes.cpp", "pictures/guide-alert", "pictures/guide-alarm",
     "docs/pictures/guide-alert.png: no scene of tools/gallery takes it"),
    ("docs/windows/frmEDO.md", "![EDO Settings](frmEDO.png)", "", "docs/windows/frmEDO.md: no page with a picture"),
    ("docs/windows/README.md", "(frmEDO.md)", "(frmTherm.md)", "no link to frmEDO.md"),
    ("src/shell/WindowFactory.cpp", 'Row{"frmEDO"', 'Row{"frmNew"', "docs/windows/frmNew.md: no page"),
    ("src/shell/Commands.cpp", '"&Graphs"', '"&Charts"', "*View > Graphs* is no entry of the menus"),
    ("src/shell/Commands.cpp", '"Ctrl+G"', '"Ctrl+H"', "Ctrl+G is not the shortcut of *View > Graphs*"),
    ("src/windows/data/frmGraph.cpp", "&Update Rate(ms)", "&Period(ms)", "*Update Rate(ms)* is no caption"),
    ("src/link/LinkErrors.cpp", "Communications Interrupted", "Transfer failed",
     '"Communications Interrupted - Check USB connections" is no text'),
]


def run(root):
    done = subprocess.run([sys.executable, CHECK, root], capture_output=True, text=True, check=False)
    return done.returncode, done.stdout


def main():
    source = pathlib.Path(sys.argv[1])
    wrong = 0
    with tempfile.TemporaryDirectory() as folder:
        root = pathlib.Path(folder)
        for name in NEEDED:
            copy = shutil.copytree if (source / name).is_dir() else shutil.copy
            (root / name).parent.mkdir(parents=True, exist_ok=True)
            copy(source / name, root / name)
        for name, before, after, expected in FAULTS:
            file = root / name
            sound = file.read_text(encoding="utf-8")
            if before not in sound:
                print(f"{name} has no {before}: this row plants nothing")
                wrong += 1
                continue
            file.write_text(sound.replace(before, after), encoding="utf-8")
            status, said = run(root)
            file.write_text(sound, encoding="utf-8")
            if status != 1 or expected not in said:
                print(f"{before} -> {after} in {name} is not named as: {expected}\n{said}")
                wrong += 1
        status, said = run(root)
        if status != 0:
            print(f"without a fault:\n{said}")
            wrong += 1
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
