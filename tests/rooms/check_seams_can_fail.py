#!/usr/bin/env python3
"""Checks that check_seams.py rejects a line for each seam, and accepts it where it is allowed.

usage: check_seams_can_fail.py CHECK
"""
import pathlib
import subprocess
import sys
import tempfile

BAD = {
    "QMessageBox::warning(this, title, text);": "platform::Prompts",
    "QFileDialog dialog(this);": "platform::FileDialogs",
    "QSettings store(file, QSettings::IniFormat);": "platform::Settings",
    "QSaveFile file(path);": "platform::Files",
    "QFile file(path);": "platform::Files",
    "if (QFile::exists(path)) return;": "platform::Files",
    "std::ofstream out(path);": "platform::Files",
    "QGuiApplication::clipboard()->setText(text);": "platform::Clipboard",
    "QClipboard* board = Board();": "platform::Clipboard",
    "menu.exec(at);": "widgets/PopUpMenu.h",
    "tree->setContextMenuPolicy(Qt::ActionsContextMenu);": "widgets/PopUpMenu.h",
    "QDialog dialog(this);": "platform::Prompts",
    "QDesktopServices::openUrl(url);": "platform::Shell",
    "QApplication::beep();": "platform::Shell",
    "QLibrary library(name);": "platform::Libraries",
    "std::exit(1);": "platform::Process",
    "QElapsedTimer timer;": "platform::Clock",
    "QThread::msleep(5);": "platform::Clock::WaitMs",
    "QCoreApplication::processEvents();": "platform::Events",
    "#include <unistd.h>": "a seam of platform/",
}
GOOD = [
    "const QString name = QFileInfo(path).fileName();",
    "const QByteArray bytes = QFile::encodeName(path);",
    "Services().clipboard.PutText(text);",
    "return QApplication::exec();",
    "menu.popup(at);",
]


def verdict(room, line):
    with tempfile.TemporaryDirectory() as root:
        file = pathlib.Path(root, "src", room, "Case.cpp")
        file.parent.mkdir(parents=True)
        file.write_text(line + "\n")
        run = subprocess.run([sys.executable, sys.argv[1], root], capture_output=True, text=True)
        return run.returncode, run.stdout, run.stderr


faults = []
for line, instead in BAD.items():
    status, said, _ = verdict("windows", line)
    if status != 1 or instead not in said:
        faults.append(f"not refused: {line}")
    if verdict("platform", line)[0] != 0:
        faults.append(f"refused in platform/: {line}")
faults += [f"refused: {line}" for line in GOOD if verdict("windows", line)[0] != 0]
print("\n".join(faults))
sys.exit(1 if faults else 0)
