#!/usr/bin/env python3
"""Checks that only src/platform/ reaches outside the process, and that no file outgrows its budget.

usage: check_seams.py ROOT    exits with 1 if a rule is broken
"""

import pathlib
import re
import sys

# What only platform/ may use, and the replacement for it elsewhere.
SEAMS = {
    r"\bQMessageBox\b": "platform::Prompts",
    r"\bQFileDialog\b": "platform::FileDialogs",
    r"\bQSettings\b": "platform::Settings",
    # Splitting and encoding file names is allowed anywhere.
    r"\bQFile\b(?!>|::(en|de)codeName)|\b(QSaveFile|QTemporary(File|Dir)|QLockFile|QDirIterator|QStandardPaths)\b"
    r"|\b[io]?fstream\b|\bfopen\b|\bstd::filesystem\b|\bQFileInfo::exists\b|\bQDir::(home|current|temp)\b":
        "platform::Files",
    r"\bQClipboard\b|\bclipboard\(\)": "platform::Clipboard",
    # During an event loop inside a handler, the handler's own window can be closed.
    r"(\.|->)exec\(|\bQMenu::exec\b|\bQEventLoop\b|\bActionsContextMenu\b|\bQ(Input|Color|Font|Progress)?Dialog\b":
        "platform::Prompts, platform::FileDialogs or widgets/PopUpMenu.h",
    r"\bQDesktopServices\b|\b(QApplication::|qApp->)beep\b": "platform::Shell",
    r"\b(dlopen|dlsym|QLibrary|LoadLibrary[AW]?)\b": "platform::Libraries",
    r"\b(std::exit|std::_Exit|std::quick_exit|std::abort|_exit|QCoreApplication::exit|qApp->exit)\b": "platform::Process",
    r"\bstd::chrono::\w*_clock\b|\bQElapsedTimer\b|\bQ(Date)?Time::currentTime\b|\bQDate(Time)?::currentDate\w*\b|\bstd::time\(":
        "platform::Clock",
    r"\bQThread::m?u?sleep\b|\bstd::this_thread::sleep": "platform::Clock::WaitMs",
    r"\bprocessEvents\b": "platform::Events",
    r"#include <(unistd|windows|Windows|dlfcn|fcntl|pthread|poll|signal|termios|sys/\w+|linux/\w+|arpa/\w+|netinet/\w+)\.h>":
        "a seam of platform/",
}

BUDGET = {".h": 200, ".cpp": 450}
WAIVER = "size-waiver:"


def check_seams(root: pathlib.Path) -> list[str]:
    faults = []
    for path in sorted((root / "src").rglob("*")):
        if path.suffix not in BUDGET or "platform" in path.relative_to(root / "src").parts[:1]:
            continue
        for number, line in enumerate(path.read_text().splitlines(), 1):
            for pattern, instead in SEAMS.items():
                if re.search(pattern, line):
                    faults.append(f"{path.relative_to(root)}:{number}: use {instead}: {line.strip()}")
    return faults


def check_sizes(root: pathlib.Path) -> list[str]:
    faults = []
    for folder in ("src", "simulator", "transports", "tools"):
        for path in sorted((root / folder).rglob("*")):
            if path.suffix not in BUDGET:
                continue
            text = path.read_text()
            lines = text.count("\n")
            if lines > BUDGET[path.suffix] and WAIVER not in text:
                faults.append(f"{path.relative_to(root)}: {lines} lines, more than {BUDGET[path.suffix]}; "
                              f"cut it, or say why not after '{WAIVER}'")
    return faults


def main() -> int:
    root = pathlib.Path(sys.argv[1])
    faults = check_seams(root) + check_sizes(root)
    for fault in faults:
        print(fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
