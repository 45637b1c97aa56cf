#!/usr/bin/env python3
"""Checks the systemd unit of "zth4718 serve": that systemd understands it, and how far it is shut in.

usage: check_service.py UNIT    prints what is wrong and exits with 1; with 77 where there is no systemd-analyze
"""

import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

MOST = 3.0  # the exposure that systemd reckons, from 0 to 10
LEFT_OUT = 77


def exposure(text: str) -> float:
    """The exposure of a unit."""
    with tempfile.TemporaryDirectory() as folder:
        unit = pathlib.Path(folder, "zth4718.service")
        unit.write_text(text)
        done = subprocess.run(["systemd-analyze", "security", "--offline=yes", "--no-pager", unit], capture_output=True,
                              text=True, check=False)
    found = re.search(r"Overall exposure level for \S+: ([0-9.]+)", done.stdout)
    if found is None:
        raise SystemExit(f"systemd-analyze tells no exposure: {done.stdout}{done.stderr}")
    return float(found.group(1))


def verify(unit: str) -> list[str]:
    """What systemd does not understand; that the program is not installed here is no fault."""
    done = subprocess.run(["systemd-analyze", "verify", "--man=no", unit], capture_output=True, text=True, check=False)
    lines = (done.stdout + done.stderr).splitlines()
    return [line for line in lines if "zth4718" in line and "is not executable" not in line]


def main() -> int:
    if shutil.which("systemd-analyze") is None:
        print("left out: there is no systemd-analyze here; it comes with Debian's package systemd")
        return LEFT_OUT
    text = pathlib.Path(sys.argv[1]).read_text()
    faults = verify(sys.argv[1])
    level = exposure(text)
    print(f"exposure {level}")
    if level >= MOST:
        faults.append(f"an exposure of {level}, not below {MOST}")
    bare = "\n".join(line for line in text.splitlines() if not re.match(r"Protect|Capability|DynamicUser|User|SystemCall",
                                                                        line))
    if exposure(bare) < MOST:
        faults.append("this check lets a unit pass that is not shut in")
    for word in ("SupplementaryGroups=i2c", "ExecStart=/usr/bin/zth4718 ", "127.0.0.1:9418"):
        if word not in text:
            faults.append(f"the unit has no {word}")
    for fault in faults:
        print(fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
