#!/usr/bin/env python3
"""Writes a file that has the headers of a library for Windows and nothing else, so that no system loads it.

usage: fake_dll.py FILE x86|x64 [NEED]...    NEED: the name of a library that it imports from
"""

import pathlib
import struct
import sys

SECTION = 0x200    # where the only section begins in the file
ADDRESS = 0x1000   # and in memory
SIZE = 0x1000


def headers(machine: str) -> bytes:
    plus = machine == "x64"
    optional = 240 if plus else 224
    directories = 112 if plus else 96
    dos = bytearray(0x80)
    dos[0:2] = b"MZ"
    dos[0x3C:0x40] = struct.pack("<I", 0x80)
    coff = struct.pack("<HHIIIHH", 0x8664 if plus else 0x14C, 1, 0, 0, 0, optional, 0x2002 if plus else 0x2102)
    rest = bytearray(optional)
    rest[0:2] = struct.pack("<H", 0x20B if plus else 0x10B)
    base = (24, "<Q") if plus else (28, "<I")
    struct.pack_into(base[1], rest, base[0], 0x10000000)
    struct.pack_into("<II", rest, 32, 0x1000, 0x200)             # alignments
    struct.pack_into("<HHHHHH", rest, 40, 10, 0, 0, 0, 6, 0)     # versions
    struct.pack_into("<II", rest, 56, ADDRESS + SIZE, SECTION)   # sizes of the image and of the headers
    struct.pack_into("<H", rest, 68, 3)                          # subsystem
    struct.pack_into("<I", rest, directories - 4, 16)
    struct.pack_into("<II", rest, directories + 8, ADDRESS + 0x10, 0x100)
    section = struct.pack("<8sIIIIIIHHI", b".idata", SIZE, ADDRESS, SIZE, SECTION, 0, 0, 0, 0, 0xC0000040)
    return bytes(dos) + b"PE\0\0" + coff + bytes(rest) + section


def imports(needs: list[str]) -> bytes:
    content = bytearray(SIZE)
    text = 0x800
    for number, need in enumerate(needs):
        # An entry by its number: 1.
        thunks = 0x400 + number * 0x20
        struct.pack_into("<Q", content, thunks, 1 << 63 | 1)
        struct.pack_into("<IIIII", content, 0x10 + number * 20, ADDRESS + thunks, 0, 0, ADDRESS + text, ADDRESS + thunks)
        content[text:text + len(need)] = need.encode()
        text += len(need) + 1
    return bytes(content)


def main() -> None:
    path, machine, *needs = sys.argv[1:]
    pathlib.Path(path).write_bytes(headers(machine).ljust(SECTION, b"\0") + imports(needs))


if __name__ == "__main__":
    main()
