#!/usr/bin/env python3
"""Builds a small executable and a library with each piece of the hardening left out in turn, and checks that
check_hardening.py reports just that piece.

usage: check_can_fail.py COMPILER FLAGS LINKER_FLAGS
"""

import pathlib
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).parent))
import check_hardening  # noqa: E402

SOURCE = """
#include <cstdio>
extern "C" int Entry(int count, const char* text) {
  char line[64];
  return std::snprintf(line, static_cast<unsigned>(count), "%s", text) + std::puts(line);
}
int main(int count, char** texts) { return Entry(count, texts[0]); }
"""

# Flags that leave one piece out when added after the others, and the report for an executable and, unless None, for a
# library.
PLANTED = [
    ("", [], []),
    ("-Wl,-z,norelro", ["no RELRO"], ["no RELRO"]),
    ("-Wl,-z,lazy", ["no BIND_NOW"], ["no BIND_NOW"]),
    ("-fno-pie -no-pie", ["no PIE"], None),
    ("-fno-stack-protector", ["no stack protector"], ["no stack protector"]),
    ("-U_FORTIFY_SOURCE", ["no fortified function"], ["no fortified function"]),
    ("-fcf-protection=none", ["no endbr64 at main"], ["no endbr64 at Entry", "no endbr64 at main"]),
]


def main() -> int:
    compiler, flags, linker_flags = sys.argv[1:]
    wrong = 0
    with tempfile.TemporaryDirectory() as folder:
        source = pathlib.Path(folder, "planted.cpp")
        source.write_text(SOURCE)
        for planted, *expected in PLANTED:
            for kind, wanted in zip((["-fPIE", "-pie"], ["-fPIC", "-shared"]), expected):
                if wanted is None:
                    continue
                binary = str(pathlib.Path(folder, "planted"))
                subprocess.run([compiler, *kind, *flags.split(), *linker_flags.split(), *planted.split(), str(source),
                                "-o", binary], check=True)
                told = sorted(fault.removeprefix(f"{binary}: ") for fault in check_hardening.faults(binary))
                if told != wanted:
                    print(f"with '{planted}' {kind[1]}: told {told}, expected {wanted}")
                    wrong += 1
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
