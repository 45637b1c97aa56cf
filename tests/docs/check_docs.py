#!/usr/bin/env python3
"""Checks that the documents keep up with the program.

usage: check_docs.py ROOT    prints one fault per line and exits with 1 if there is any

- Each relative link leads to an existing file and, if it names one, to an existing heading.
- Each picture that is named exists, each existing picture is named, and tools/gallery takes it.
- Each window has a page with a picture, linked from docs/windows/README.md.
- In the guide and on the windows' pages, text in *italics* is a caption of the program, *Menu > Entry* is an entry of that
  menu, and a shortcut after it is the entry's.
- Text in "quotes" there is a text of the program, or made up of its texts, numbers and a file name.
"""

import functools
import os
import pathlib
import re
import sys

NO_PAGE = {"frmAbout"}  # it needs no explanation
SKIPPED = re.compile(r"^(build.*|\..+)$")

LINK = re.compile(r"!?\[[^\]]*\]\(([^)\s]+)\)")
ITALIC = re.compile(r"(?<![*\w])\*(?!\*)([^*]+)\*(?!\*)")
QUOTE = re.compile(r'"((?:[^"|]|"}")+?)"(?!})')
LITERAL = re.compile(r'(?:u8)?((?:"(?:[^"\\\n]|\\.)*"\s*)+)')
MENU = re.compile(r'\{"(mnu\w+)", "([^"]+)"\}')
ENTRY = re.compile(r'\{"(mnu\w*)", "(mnu\w+)", "([^"]+)", "([^"]*)", "(\w*)"\}')
# Names and addresses that are put into a text of the program.
OWN_NAME = re.compile(r"[\w-]+\.(csv|sav)|^[0-9A-F]{2}(?=h on)")


def documents(root):
    for folder, names, files in os.walk(root):
        names[:] = [name for name in names if not SKIPPED.match(name)]
        yield from (pathlib.Path(folder, file) for file in files if file.endswith(".md"))


def prose(text):
    """The text without code, in which these characters have other meanings."""
    text = re.sub(r"^(```.*?^```|(?:^ {4,}[^\n]*\n)+)", "", text, flags=re.M | re.S)
    return re.sub(r"`[^`]*`", "", text)


def slugs(path):
    found = set()
    for heading in re.findall(r"^#+ (.+)$", path.read_text(encoding="utf-8"), re.M):
        plain = re.sub(r"[^\w\- ]", "", heading.strip().lower())
        found.add(plain.replace(" ", "-"))
    return found


def links(root):
    for page in documents(root):
        for target in LINK.findall(prose(page.read_text(encoding="utf-8"))):
            if not re.match(r"\w+:", target):
                yield page, target


def check_links(root):
    for page, target in links(root):
        file, _, heading = target.partition("#")
        there = (page.parent / file) if file else page
        if not there.exists():
            yield f"{page.relative_to(root)}: {target} is not there"
        elif heading and there.suffix == ".md" and heading not in slugs(there):
            yield f"{page.relative_to(root)}: {target} has no such heading"


def check_pictures(root):
    named = {(page.parent / target).resolve() for page, target in links(root) if target.endswith(".png")}
    scenes = "".join(path.read_text(encoding="utf-8") for path in (root / "tools/gallery").glob("*.cpp"))
    for picture in sorted((root / "docs").rglob("*.png")):
        name = picture.relative_to(root / "docs").with_suffix("").as_posix()
        if picture.resolve() not in named:
            yield f"docs/{name}.png: no document shows it"
        if f'"{name}"' not in scenes and f'"{picture.stem}"' not in scenes:
            yield f"docs/{name}.png: no scene of tools/gallery takes it"


def check_windows(root):
    factory = (root / "src/shell/WindowFactory.cpp").read_text(encoding="utf-8")
    index = (root / "docs/windows/README.md").read_text(encoding="utf-8")
    windows = re.findall(r'Row\{"(\w+)"', factory)
    if not windows:
        yield "src/shell/WindowFactory.cpp: no row of a window is found"
    for window in set(windows) - NO_PAGE:
        page = root / "docs/windows" / f"{window}.md"
        if not page.exists() or ".png)" not in page.read_text(encoding="utf-8"):
            yield f"docs/windows/{window}.md: no page with a picture"
        if f"({window}.md)" not in index:
            yield f"docs/windows/README.md: no link to {window}.md"


def plain(caption):
    """A caption as the user reads it: without mnemonics, with single blanks."""
    return " ".join(re.sub(r"&(.)", r"\1", caption).split())


@functools.cache
def texts_of(root):
    texts = set()
    for path in [*(root / "src").rglob("*"), *(root / "simulator").rglob("*")]:
        if path.suffix not in (".h", ".cpp"):
            continue
        for run in LITERAL.findall(path.read_text(encoding="utf-8")):
            pieces = re.findall(r'"((?:[^"\\\n]|\\.)*)"', run)
            joined = "".join(pieces).replace("\\u00B0", "°").replace('\\"', '"').split("\\t")[0]
            texts.add(plain(joined))
    return texts


def pattern_of(texts):
    """Matches texts with their %1 filled in, if the rest is long enough to identify them."""
    known = [text for text in texts if "%" in text and len(re.sub(r"%\w|\W", "", text)) > 2]
    return re.compile("|".join(re.sub(r"%\d", r"\\w+", re.escape(text)) for text in known))


def check_captions(root, pages):
    commands = (root / "src/shell/Commands.cpp").read_text(encoding="utf-8")
    menus = {name: plain(caption) for name, caption in MENU.findall(commands)}
    entries = {(menus.get(row[0]), plain(row[2])): row[3] for row in ENTRY.findall(commands)}
    if not entries:
        yield "src/shell/Commands.cpp: no menu entry is found"
    texts = texts_of(root)
    holders = pattern_of(texts)
    for page in pages:
        where = page.relative_to(root)
        text = " ".join(prose(page.read_text(encoding="utf-8")).split())
        for match in ITALIC.finditer(text):
            caption = match.group(1)
            menu, _, entry = caption.partition(" > ")
            if not entry:
                # The two remote channels share their captions.
                alone = re.sub(r"^Remote[12] ", "", caption)
                if not {caption, alone} & texts and not holders.fullmatch(caption):
                    yield f"{where}: *{caption}* is no caption of the program"
            elif (menu, entry) not in entries and (menu, entry) != ("Menu", "Entry"):
                yield f"{where}: *{caption}* is no entry of the menus"
            else:
                shortcut = re.match(r"(?: \(|, )((?:Ctrl\+|F\d)[\w+]*)", text[match.end():])
                if shortcut and shortcut.group(1) != entries[menu, entry]:
                    yield f"{where}: {shortcut.group(1)} is not the shortcut of *{caption}*"


def check_quotes(root, page):
    texts = texts_of(root)
    parts = [part.strip() for text in texts for part in re.split(r"%\w+|\\n", text)]
    pieces = {piece for part in parts for piece in (part, part.strip(";: ")) if len(piece) > 2}
    longest_first = sorted(pieces, key=len, reverse=True)
    holders = pattern_of(texts)
    for quote in QUOTE.findall(prose(page.read_text(encoding="utf-8"))):
        rest = plain(quote)
        if rest in texts or holders.fullmatch(rest):
            continue
        rest = OWN_NAME.sub("", rest)
        for piece in longest_first:
            rest = rest.replace(piece, " ")
        if re.sub(r"\d+", "", rest).strip():
            yield f'{page.relative_to(root)}: "{quote}" is no text of the program'


def main():
    root = pathlib.Path(sys.argv[1]).resolve()
    guide = root / "docs/guide.md"
    pages = [guide, *sorted((root / "docs/windows").glob("frm*.md"))]
    faults = [*check_links(root), *check_pictures(root), *check_windows(root), *check_captions(root, pages),
              *(fault for page in pages for fault in check_quotes(root, page))]
    for fault in faults:
        print(fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
